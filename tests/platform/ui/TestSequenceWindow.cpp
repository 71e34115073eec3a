#include "platform/ui/DRDarkStyle.h"
#include "tests/platform/ui/DRSequenceWindowFixture.h"
#include "tests/support/DRTestTable.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using Fixture = DRSequenceWindowFixture;

class TestSequenceWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }

    void pagesAreMadeOnceAndShownBetweenTheStepsOperations()
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

    void buttonsFollowTheStateMask_data()
    {
        const DRTestTable<int, QString, QString> row("mask", "next", "cancel");
        row("waiting", 1, u"disabled"_s, u"enabled"_s);
        row("waited", 3, u"enabled"_s, u"enabled"_s);
        row("nothing", 4, u"disabled"_s, u"disabled"_s);
        row("no next", 5, u"disabled"_s, u"enabled"_s);
        row("all", 7, u"enabled"_s, u"enabled"_s);
        row("closing page", 22, u"enabled"_s, u"hidden"_s);
    }

    void buttonsFollowTheStateMask()
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

    void labelsComeFromTheAliasesAndKeepTheirMnemonics()
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

    void keys_data()
    {
        // focus: what has the focus; empty for the page
        const DRTestTable<QString, QString, int, QString> row("focus", "keyEquivalent", "key", "lastCall");
        row("escape cancels", {}, {}, int(Qt::Key_Escape), u"cancelled"_s);
        row("return without equivalent", {}, {}, int(Qt::Key_Return), u"a didAppear"_s);
        row("return is next", {}, u"\r"_s, int(Qt::Key_Return), u"b didAppear"_s);
        row("enter is next", {}, u"\r"_s, int(Qt::Key_Enter), u"b didAppear"_s);
        row("return on next", u"next"_s, {}, int(Qt::Key_Return), u"b didAppear"_s);
        row("return on cancel", u"cancel"_s, u"\r"_s, int(Qt::Key_Return), u"cancelled"_s);
        row("space on cancel", u"cancel"_s, {}, int(Qt::Key_Space), u"cancelled"_s);
    }

    void keys()
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

    void firstFocusIsThePagesElseNextElseNothing()
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

    void headingFollowsTheStep()
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

    void closing_data()
    {
        const DRTestTable<bool, int, bool, QStringList> row("mayLeave", "mask", "isClosed", "calls");
        row("agreed", true, 7, true, {u"asked"_s, u"a willDisappear"_s, u"cancelled"_s});
        row("refused", false, 5, false, {u"asked"_s});
        row("closing page", true, 22, true, {u"asked"_s, u"a willDisappear"_s, u"completed"_s});
    }

    void hurriedInputPressesOnce()
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

    void cancelAsksFirst()
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

    void closing()
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

    void sizeIsKept()
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

    void groupsSayWhereTheUserIs()
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
        f.sequence.failedGroup = 0;
        QVERIFY(f.sequence.gotoStep(f.c, 2));
        QCOMPARE(names(), (QStringList{u"Welcome, failed"_s, u"Select content, current step"_s}));
    }

    void everythingIsMirroredFromRightToLeft()
    {
        Fixture f;
        f.window->setLayoutDirection(Qt::RightToLeft);
        QVERIFY(f.open());
        const auto left = [&f](QWidget* widget) { return widget->mapTo(f.window.get(), QPoint()).x(); };
        QVERIFY(left(f.button(u"next"_s)) < left(f.button(u"cancel"_s)));
        QVERIFY(left(f.window->findChildren<QLabel*>().first()) > f.window->width() / 2);
    }

    /// The window's own texts stay whole, and the keyboard reaches what can be scrolled.
    void onlyThePageOfASmallWindowIsScrolled()
    {
        Fixture f(QString(), u" und etwas länger"_s);
        auto* const page = new QWidget;
        page->setMinimumHeight(2000);
        f.pages[u"a"_s] = page;
        QVERIFY(f.open());
        f.window->resize(f.window->minimumSizeHint());
        QCoreApplication::processEvents();
        for (const QLabel* label : f.window->findChildren<QLabel*>()) {
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
        }
        const auto* const area = f.window->findChild<QScrollArea*>();
        QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        QCOMPARE(area->focusPolicy(), Qt::TabFocus);
        page->setMinimumHeight(1);
        QTRY_COMPARE(area->focusPolicy(), Qt::NoFocus);
    }
};

QTEST_MAIN(TestSequenceWindow)
#include "TestSequenceWindow.moc"
