#include "platform/ui/DRHtmlTextView.h"
#include "tests/support/DRTestTable.h"
#include "tests/wizard/widgets/DRWidgetFixture.h"
#include "wizard/widgets/DRMigrateTooltipWindowController.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace {

/// A page that Escape cancels, and its panel.
struct Panel : DRWidgetFixture {
    Panel()
    {
        panel.setStyle(&still);
        panel.textView().setHtml(u"Some <b>words</b>"_s);
        QObject::connect(&cancel, &QShortcut::activated, &page, [this] { cancelled += 1; });
        page.show();
        QCoreApplication::processEvents();
    }

    QWidget page;
    QShortcut cancel{Qt::Key_Escape, &page};
    int cancelled = 0;
    DRMigrateTooltipWindowController panel{&page};
};

} // namespace

class TestTooltipWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void frameStaysOnTheScreen_data()
    {
        const DRTestTable<QPoint, QSize, QPoint> row("position", "size", "topLeft");
        row("centred vertically", QPoint(300, 400), QSize(400, 260), QPoint(300, 270));
        row("at the right", QPoint(900, 400), QSize(400, 260), QPoint(600, 270));
        row("at the bottom", QPoint(300, 790), QSize(400, 260), QPoint(300, 540));
        row("at the top", QPoint(300, 60), QSize(400, 260), QPoint(300, 50));
        row("larger than the screen", QPoint(300, 400), QSize(1200, 900), QPoint(10, 50));
    }

    void frameStaysOnTheScreen()
    {
        QFETCH(QPoint, position);
        QFETCH(QSize, size);
        const QRect available(10, 50, 990, 750);
        const QRect frame = DRMigrateTooltipWindowController::frameFor(position, size, available);
        QTEST(frame.topLeft(), "topLeft");
        QCOMPARE(frame.size(), size);
    }

    void growsToItsSize()
    {
        Panel shown;
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        const QRect target = DRMigrateTooltipWindowController::frameFor({100, 300}, {400, 260}, available);
        shown.panel.zoomFromPosition({100, 300}, {400, 260});
        QCOMPARE(shown.panel.geometry(), target);
        QCOMPARE(shown.panel.textView().geometry(), QRect(20, 20, 360, 220));
        QCOMPARE(QAccessible::queryAccessibleInterface(&shown.panel)->text(QAccessible::Name), u"Some words"_s);

        shown.panel.setStyle(&shown.animated);
        shown.panel.zoomFromPosition({100, 300}, {400, 260});
        QVERIFY(shown.panel.geometry() != target);
        QTRY_COMPARE(shown.panel.geometry(), target);
    }

    void keysReachThePanel()
    {
        Panel shown;
        shown.panel.zoomFromPosition({100, 300}, {400, 260});
        QTest::keyClick(&shown.page, Qt::Key_Escape);
        QVERIFY(!shown.panel.isVisible());
        QCOMPARE(shown.cancelled, 0);
        QTest::keyClick(&shown.page, Qt::Key_Escape);
        QCOMPARE(shown.cancelled, 1);
        shown.panel.textView().setHtml(u"Word "_s.repeated(2000));
        shown.panel.zoomFromPosition({100, 300}, {400, 260});
        QTest::keyClick(&shown.page, Qt::Key_PageDown);
        QVERIFY(shown.panel.textView().verticalScrollBar()->value() > 0);
    }
};

QTEST_MAIN(TestTooltipWindow)

#include "TestTooltipWindow.moc"
