#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRSequenceWindow.h"
#include "tests/support/DRScreenshot.h"
#include "tests/support/DRTestAnalytics.h"

#include <QCheckBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

class NotingStep final : public DRSequenceStep {
public:
    NotingStep(const QString& key, QStringList& calls)
        : DRSequenceStep(key), title(u"Title of "_s + key), m_calls(calls)
    {
    }

    QString localizedTitle() const override { return title; }
    void stepWillAppearInDirection(DRSequenceDirection) override { m_calls.append(key() + u" willAppear"_s); }
    void stepDidAppearInDirection(DRSequenceDirection) override { m_calls.append(key() + u" didAppear"_s); }
    void stepWillDisappear() override { m_calls.append(key() + u" willDisappear"_s); }

    QString title;

private:
    QStringList& m_calls;
};

class NotingSequence final : public DRSequence {
public:
    using DRSequence::DRSequence;
    using DRSequence::setNextKeyEquivalent;
};

const QHash<QString, QString> kTexts = {
    {u"dr_sequence_button_next"_s, u"&Next"_s},
    {u"dr_sequence_button_done"_s, u"&Done"_s},
    {u"dr_sequence_button_cancel"_s, u"&Cancel"_s},
    {u"back"_s, u"&Back"_s},
    {u"dr_sequence_group_done"_s, u"done"_s},
    {u"dr_sequence_group_current"_s, u"current step"_s},
    {u"dr_sequence_group_to_come"_s, u"still to come"_s},
};

/// A window of the steps "a" and "b" in one group and "c" in another, an empty group between, not yet started.
struct Fixture {
    explicit Fixture(const QString& settingsPath = QString(), const QString& longer = QString())
    {
        const QString titles[] = {u"Welcome"_s + longer, u"Nothing"_s, u"Select content"_s + longer};
        for (int group = 0; group < 3; ++group) {
            sequence.addStepGroupWithIdentifier(group, titles[group]);
        }
        a = add(u"a"_s, 0);
        b = add(u"b"_s, 0);
        c = add(u"c"_s, 2);
        QObject::connect(&sequence, &DRSequence::ended, &sequence, [this](DRSequence::Ending ending) {
            calls.append(ending == DRSequence::Ending::Completed ? u"completed"_s : u"cancelled"_s);
        });
        DRSequenceWindow::Setup setup{.settingsPath = settingsPath};
        setup.makePage = [this](DRSequenceStep& step) {
            calls.append(step.key() + u" page"_s);
            return pages.value(step.key());
        };
        setup.text = [longer](const QString& identifier) { return kTexts.value(identifier) + longer; };
        setup.mayLeave = [this] {
            calls.append(u"asked"_s);
            return mayLeave;
        };
        window = std::make_unique<DRSequenceWindow>(sequence, setup);
    }

    NotingStep* add(const QString& key, int group)
    {
        auto step = std::make_unique<NotingStep>(key, calls);
        NotingStep* const added = step.get();
        sequence.pushStep(std::move(step), group);
        return added;
    }

    [[nodiscard]] bool open()
    {
        window->show();
        sequence.start();
        QApplication::setActiveWindow(window.get());
        return QTest::qWaitForWindowActive(window.get());
    }

    QPushButton* button(const QString& name) const { return window->findChild<QPushButton*>(name); }
    QLabel* heading() const { return window->findChild<QLabel*>(u"heading"_s); }
    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    DRTestAnalytics analytics;
    NotingSequence sequence{analytics};
    QHash<QString, QWidget*> pages; ///< by step key; the window takes them over
    bool mayLeave = true;
    NotingStep* a = nullptr;
    NotingStep* b = nullptr;
    NotingStep* c = nullptr;
    std::unique_ptr<DRSequenceWindow> window;
};

/// A page as it may come: texts with a link, boxes.
QWidget* makeSamplePage(const QString& longer)
{
    auto* const page = new QWidget;
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    const auto addText = [column](const QString& html) {
        auto* const view = new DRHtmlTextView;
        view->setBlockSelection(true);
        view->removePadding();
        view->setHtml(html);
        column->addWidget(view);
    };
    addText(u"This assistant copies messages, photos and more to your phone. Your backup is not changed."_s + longer);
    addText(u"<b>1. Have a fresh backup</b><br />It must be here.<br /><a href='1'>How to make a backup</a>"_s);
    for (const QString& label : {u"Contacts and calls: 128"_s, u"Conversations: 34"_s, u"Notes: 7"_s}) {
        auto* const box = new QCheckBox(label + longer);
        box->setChecked(true);
        column->addWidget(box);
    }
    addText(u"<b>2. Connect your phone</b><br />Leave it connected to the end. "_s + longer.repeated(3));
    column->addStretch(1);
    return page;
}

} // namespace

class TestSequenceWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }
    void pagesAreMadeOnceAndShownBetweenTheStepsOperations();
    void buttonsFollowTheStateMask_data();
    void buttonsFollowTheStateMask();
    void labelsComeFromTheAliasesAndKeepTheirMnemonics();
    void keys_data();
    void keys();
    void firstFocusIsThePagesElseNextElseNothing();
    void headingFollowsTheStep();
    void closing_data();
    void hurriedInputPressesOnce();
    void cancelAsksFirst();
    void closing();
    void sizeIsKept();
    void groupsSayWhereTheUserIs();
    void everythingIsMirroredFromRightToLeft();
    void longTextsAndLargeFontsAreNotCut_data();
    void longTextsAndLargeFontsAreNotCut();
};

void TestSequenceWindow::pagesAreMadeOnceAndShownBetweenTheStepsOperations()
{
    Fixture f;
    f.pages[u"a"_s] = new QCheckBox(u"page a"_s);
    f.pages[u"b"_s] = new QCheckBox(u"page b"_s);
    QVERIFY(f.open());
    QTest::mouseClick(f.button(u"next"_s), Qt::LeftButton);
    QCOMPARE(f.takeCalls(), (QStringList{u"a willAppear"_s, u"a page"_s, u"a didAppear"_s, u"a willDisappear"_s,
                                         u"b willAppear"_s, u"b page"_s, u"b didAppear"_s}));
    QVERIFY(f.pages[u"b"_s]->isVisible() && !f.pages[u"a"_s]->isVisible());
    QVERIFY(f.sequence.gotoStep(f.a, 0));
    QVERIFY2(!f.takeCalls().contains(u"a page"_s), "the page keeps what the user did to it");
    QVERIFY(f.pages[u"a"_s]->isVisible() && !f.pages[u"b"_s]->isVisible());
}

void TestSequenceWindow::buttonsFollowTheStateMask_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("next");
    QTest::addColumn<QString>("cancel");
    QTest::newRow("waiting") << 1 << u"hidden"_s << u"enabled"_s;
    QTest::newRow("waited") << 3 << u"hidden"_s << u"enabled"_s;
    QTest::newRow("nothing") << 4 << u"disabled"_s << u"disabled"_s;
    QTest::newRow("no next") << 5 << u"disabled"_s << u"enabled"_s;
    QTest::newRow("all") << 7 << u"enabled"_s << u"enabled"_s;
    QTest::newRow("closing page") << 22 << u"enabled"_s << u"hidden"_s;
}

void TestSequenceWindow::buttonsFollowTheStateMask()
{
    QFETCH(const int, mask);
    Fixture f;
    QVERIFY(f.open());
    const auto stateOf = [&f](const QString& name) {
        const QPushButton* const button = f.button(name);
        return !button->isVisible() ? u"hidden"_s : button->isEnabled() ? u"enabled"_s : u"disabled"_s;
    };
    f.a->setStateMask(mask);
    QTEST(stateOf(u"next"_s), "next");
    QTEST(stateOf(u"cancel"_s), "cancel");
    f.a->setStateMask(DRSequenceStep::kStateAllEnabled);
    QCOMPARE(stateOf(u"next"_s) + stateOf(u"cancel"_s), u"enabledenabled"_s);
}

void TestSequenceWindow::labelsComeFromTheAliasesAndKeepTheirMnemonics()
{
    Fixture f;
    f.b->localizations().setAliasString(u"back"_s, u"dr_sequence_button_cancel"_s);
    QVERIFY(f.open());
    QCOMPARE(f.button(u"cancel"_s)->text(), u"&Cancel"_s);
    QTest::keyClick(f.window.get(), Qt::Key_N, Qt::AltModifier);
    QTRY_COMPARE(f.sequence.currentStep(), f.b);
    QCOMPARE(f.button(u"cancel"_s)->text(), u"&Back"_s);
    f.sequence.localizations().setAliasString(u"dr_sequence_button_done"_s, u"dr_sequence_button_next"_s);
    f.b->setStateMask(DRSequenceStep::kStateClosing | DRSequenceStep::kStateAllEnabled);
    QCOMPARE(f.button(u"next"_s)->text(), u"&Done"_s);
}

void TestSequenceWindow::keys_data()
{
    QTest::addColumn<QString>("focus"); ///< what has the focus; empty for the page
    QTest::addColumn<QString>("keyEquivalent");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("lastCall");
    QTest::newRow("escape cancels") << QString() << QString() << int(Qt::Key_Escape) << u"cancelled"_s;
    QTest::newRow("return without equivalent") << QString() << QString() << int(Qt::Key_Return) << u"a didAppear"_s;
    QTest::newRow("return is next") << QString() << u"\r"_s << int(Qt::Key_Return) << u"b didAppear"_s;
    QTest::newRow("enter is next") << QString() << u"\r"_s << int(Qt::Key_Enter) << u"b didAppear"_s;
    QTest::newRow("return on next") << u"next"_s << QString() << int(Qt::Key_Return) << u"b didAppear"_s;
    QTest::newRow("return on cancel") << u"cancel"_s << u"\r"_s << int(Qt::Key_Return) << u"cancelled"_s;
    QTest::newRow("space on cancel") << u"cancel"_s << QString() << int(Qt::Key_Space) << u"cancelled"_s;
}

void TestSequenceWindow::keys()
{
    QFETCH(const QString, focus);
    QFETCH(const QString, keyEquivalent);
    QFETCH(const int, key);
    Fixture f;
    auto* const box = new QCheckBox(u"page a"_s);
    f.pages[u"a"_s] = box;
    QVERIFY(f.open());
    f.sequence.setNextKeyEquivalent(keyEquivalent);
    f.sequence.start();
    f.calls.removeAll(u"a willDisappear"_s);
    QWidget* const focused = focus.isEmpty() ? box : static_cast<QWidget*>(f.button(focus));
    focused->setFocus();
    QTest::keyClick(focused, Qt::Key(key));
    QTEST(f.calls.last(), "lastCall");
}

void TestSequenceWindow::firstFocusIsThePagesElseNextElseNothing()
{
    Fixture f;
    auto* const page = new QWidget;
    auto* const list = new QLineEdit(page);
    page->setFocusProxy(list);
    f.pages[u"b"_s] = page;
    QVERIFY(f.open());
    QVERIFY(f.button(u"next"_s)->hasFocus());
    f.sequence.next();
    QVERIFY(list->hasFocus());
    f.c->setStateMask(DRSequenceStep::kStateNextDisabled);
    f.sequence.next();
    QVERIFY2(f.window->hasFocus(), "a Space pressed too long must not cancel, but Escape may");
}

void TestSequenceWindow::headingFollowsTheStep()
{
    Fixture f;
    QVERIFY(f.open());
    f.a->title = u"No <b>backup</b> found"_s;
    Q_EMIT f.a->contentChanged();
    QCOMPARE(f.heading()->text(), u"No <b>backup</b> found"_s);
    QCOMPARE(f.heading()->textFormat(), Qt::PlainText);
    f.sequence.next();
    Q_EMIT f.a->contentChanged();
    QCOMPARE(f.heading()->text(), u"Title of b"_s);
}

void TestSequenceWindow::hurriedInputPressesOnce()
{
    Fixture f;
    QVERIFY(f.open());
    f.a->setStateMask(7);
    f.b->setStateMask(7);
    QPushButton* const next = f.button(u"next"_s);
    QTest::mouseClick(next, Qt::LeftButton);
    const QPointF inside(3, 3);
    for (const QEvent::Type type : {QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent second(type, inside, next->mapToGlobal(inside), Qt::LeftButton,
                           isRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(next, &second);
    }
    QCOMPARE(f.sequence.currentStep()->key(), u"b"_s);

    f.sequence.gotoStep(f.a, 0);
    f.a->setStateMask(7);
    for (QWidget* const widget : {static_cast<QWidget*>(next), static_cast<QWidget*>(f.window.get())}) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        QCoreApplication::sendEvent(widget, &held);
    }
    for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) { // a repeat as X11 sends it
        QKeyEvent repeat(type, Qt::Key_Return, Qt::NoModifier, u"\r"_s);
        repeat.setTimestamp(5000);
        QCoreApplication::sendEvent(next, &repeat);
    }
    QCOMPARE(f.sequence.currentStep()->key(), u"a"_s);
}

void TestSequenceWindow::cancelAsksFirst()
{
    Fixture f;
    QVERIFY(f.open());
    f.a->setStateMask(7);
    f.mayLeave = false;
    f.calls.clear();
    QTest::mouseClick(f.button(u"cancel"_s), Qt::LeftButton);
    QTest::keyClick(f.window.get(), Qt::Key_Escape);
    QCOMPARE(f.takeCalls(), (QStringList{u"asked"_s, u"asked"_s}));
    f.a->setStateMask(6); // Cancel may not be pressed
    QTest::keyClick(f.window.get(), Qt::Key_Escape);
    QCOMPARE(f.takeCalls(), QStringList());
}

void TestSequenceWindow::closing_data()
{
    QTest::addColumn<bool>("mayLeave");
    QTest::addColumn<int>("mask");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("agreed") << true << 7 << true << QStringList{u"asked"_s, u"a willDisappear"_s, u"cancelled"_s};
    QTest::newRow("refused") << false << 5 << false << QStringList{u"asked"_s};
    QTest::newRow("closing page") << true << 22 << true
                                  << QStringList{u"asked"_s, u"a willDisappear"_s, u"completed"_s};
}

void TestSequenceWindow::closing()
{
    QFETCH(const bool, mayLeave);
    QFETCH(const int, mask);
    QFETCH(const bool, isClosed);
    Fixture f;
    QVERIFY(f.open());
    f.a->setStateMask(mask);
    f.mayLeave = mayLeave;
    f.calls.clear();
    QCOMPARE(f.window->close(), isClosed);
    QTEST(f.takeCalls(), "calls");
    QCOMPARE(f.window->isVisible(), !isClosed);

    f.sequence.cancel();
    QVERIFY2(!f.window->isVisible(), "a sequence that has ended takes its window along");
    QVERIFY2(!f.calls.contains(u"asked"_s), "and does not ask");
}

void TestSequenceWindow::sizeIsKept()
{
    const QTemporaryDir folder;
    const QString settings = folder.filePath(u"window.ini"_s);
    const QSize size = [&settings] {
        Fixture f(settings);
        f.window->resize(f.window->size() - QSize(31, 17));
        f.window->show();
        f.window->close();
        return f.window->size();
    }();
    QCOMPARE(Fixture(settings).window->size(), size);
    QVERIFY(Fixture().window->size() != size);

    QFile broken(settings);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    QVERIFY(broken.write("[window]\nsize=@Size(-4 9999999)\n") > 0);
    broken.close();
    const Fixture f(settings);
    QVERIFY(f.window->height() <= QGuiApplication::primaryScreen()->availableSize().height());
    QVERIFY(f.window->width() >= f.window->minimumSizeHint().width());
}

void TestSequenceWindow::groupsSayWhereTheUserIs()
{
    Fixture f;
    QVERIFY(f.open());
    const auto names = [&f] {
        QStringList all;
        for (const QLabel* label : f.window->findChildren<QLabel*>()) {
            all += label->accessibleName().isEmpty() || label->objectName() == u"heading"
                       ? QStringList()
                       : QStringList{label->accessibleName()};
        }
        return all;
    };
    QCOMPARE(names(), (QStringList{u"Welcome, current step"_s, u"Select content, still to come"_s}));
    QVERIFY(f.sequence.gotoStep(f.c, 2));
    QCOMPARE(names(), (QStringList{u"Welcome, done"_s, u"Select content, current step"_s}));
}

void TestSequenceWindow::everythingIsMirroredFromRightToLeft()
{
    Fixture f;
    f.window->setLayoutDirection(Qt::RightToLeft);
    f.pages[u"a"_s] = makeSamplePage(QString());
    QVERIFY(f.open());
    const auto left = [&f](QWidget* widget) { return widget->mapTo(f.window.get(), QPoint()).x(); };
    QVERIFY(left(f.button(u"next"_s)) < left(f.button(u"cancel"_s)));
    const auto labels = f.window->findChildren<QLabel*>();
    QVERIFY(left(labels.first()) > f.window->width() / 2);
    QVERIFY(saveScreenshot(*f.window, u"window_rtl"_s));
}

void TestSequenceWindow::longTextsAndLargeFontsAreNotCut_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QString>("longer");
    QTest::addColumn<bool>("isSmall"); ///< the window as small as it may be
    QTest::newRow("usual") << 10 << QString() << false;
    QTest::newRow("large") << 14 << QString() << false;
    QTest::newRow("long") << 10 << u" und etwas länger"_s << false;
    QTest::newRow("large and long in a small window") << 14 << u" und etwas länger"_s << true;
}

void TestSequenceWindow::longTextsAndLargeFontsAreNotCut()
{
    QFETCH(const int, points);
    QFETCH(const QString, longer);
    QFETCH(const bool, isSmall);
    const QFont usual = QApplication::font();
    QFont font = usual;
    font.setPointSize(points);
    QApplication::setFont(font);
    {
        Fixture f(QString(), longer);
        f.b->title = u"Move your content from your old phone"_s + longer;
        f.pages[u"b"_s] = makeSamplePage(longer);
        QVERIFY(f.open());
        f.sequence.next();
        if (isSmall) {
            f.window->resize(f.window->minimumSizeHint());
        }
        QCoreApplication::processEvents();
        QVERIFY(saveScreenshot(*f.window, u"window_"_s + QLatin1String(QTest::currentDataTag())));
        for (QLabel* label : f.window->findChildren<QLabel*>()) {
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
            QVERIFY2(label->wordWrap() || label->width() >= label->sizeHint().width(), qPrintable(label->text()));
        }
        for (QWidget* widget : f.window->findChildren<QPushButton*>()) {
            QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), qPrintable(widget->objectName()));
        }
        for (DRHtmlTextView* view : f.window->findChildren<DRHtmlTextView*>()) {
            QVERIFY2(view->viewport()->height() >= view->document()->size().height(), "the text is whole");
        }
        auto* const area = f.window->findChild<QScrollArea*>();
        QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        QCOMPARE(area->focusPolicy(), area->verticalScrollBar()->maximum() > 0 ? Qt::TabFocus : Qt::NoFocus);
    }
    QApplication::setFont(usual);
}

QTEST_MAIN(TestSequenceWindow)
#include "TestSequenceWindow.moc"
