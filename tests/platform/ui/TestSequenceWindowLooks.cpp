#include "platform/ui/DRDarkStyle.h"
#include "platform/ui/DRHtmlTextView.h"
#include "tests/platform/ui/DRSequenceWindowFixture.h"
#include "tests/support/DRScreenshot.h"

#include <QCheckBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using Fixture = DRSequenceWindowFixture;

namespace {

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

/// That nothing of the window is cut or on the wrong side.
class TestSequenceWindowLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }
    void everythingIsMirroredFromRightToLeft();
    void longTextsAndLargeFontsAreNotCut_data();
    void longTextsAndLargeFontsAreNotCut();
};

void TestSequenceWindowLooks::everythingIsMirroredFromRightToLeft()
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

void TestSequenceWindowLooks::longTextsAndLargeFontsAreNotCut_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QString>("longer");
    QTest::addColumn<bool>("isSmall"); ///< the window as small as it may be
    QTest::newRow("usual") << 10 << QString() << false;
    QTest::newRow("large") << 14 << QString() << false;
    QTest::newRow("long") << 10 << u" und etwas länger"_s << false;
    QTest::newRow("large and long in a small window") << 14 << u" und etwas länger"_s << true;
}

void TestSequenceWindowLooks::longTextsAndLargeFontsAreNotCut()
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

QTEST_MAIN(TestSequenceWindowLooks)
#include "TestSequenceWindowLooks.moc"
