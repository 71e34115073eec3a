#include "tests/support/DRTestTable.h"
#include "tests/wizard/widgets/DRWidgetFixture.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"
#include "wizard/widgets/DRMGSelectDataText.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using Content = DRMGSelectDataEntry::Content;

namespace {

/// A page with a box for seven notes.
struct Box : DRWidgetFixture {
    Box()
    {
        layout.addWidget(&entry);
        entry.setStringValue(u"Notes: %i"_s);
        entry.setDataCounter(7);
        page.show();
    }

    /// A point of the tick's ground. The tick is 20 points wide and begins 6 points from the edge.
    [[nodiscard]] bool isTickFilledAt(int x)
    {
        return pictureOf(entry, 1).pixelColor(x, entry.height() / 2 - 7).alpha() == 255;
    }

    QWidget page;
    QVBoxLayout layout{&page};
    DRMGSelectDataEntry entry{resources, timers};
    QSignalSpy changes{&entry, &DRMGSelectDataEntry::selectDataEntrySelectionDidChange};
};

} // namespace

class TestSelectDataEntry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void labelIsAFormat()
    {
        QCOMPARE(selectDataText({u"Notes: %i"_s, 12345, {}, {}}), u"Notes: 12345"_s);
        QCOMPARE(selectDataText({u"%1 %i %2"_s, 2, 1536, {}}), u"%1 2 %2 (1.50\u00a0KiB)"_s);
        QCOMPARE(selectDataText({u"%i"_s, 0x80000000, {}, {}}), u"-2147483648"_s);
        QCOMPARE(selectDataText({u"%i"_s, 0x100000003, {}, {}}), u"3"_s);
    }

    void stateDecidesTheImage_data()
    {
        const DRTestTable<qint64, QString, qint64> row("state", "image", "toggled");
        row("ticked", 1, u"checkbox-active"_s, 0);
        row("clear", 0, u"checkbox-passive"_s, 1);
        row("mixed", -1, u"checkbox-mixed"_s, 1);
        row("any other", 2, u"checkbox-passive"_s, 1);
    }

    void stateDecidesTheImage()
    {
        QFETCH(qint64, state);
        Box box;
        QCOMPARE(box.entry.state(), 1);
        box.entry.setState(state);
        QTEST(box.entry.checkboxImageName(), "image");
        QCOMPARE(box.isTickFilledAt(16), state == 1 || state == -1);
        box.entry.setLayoutDirection(Qt::RightToLeft);
        QVERIFY(!box.isTickFilledAt(16));
        QCOMPARE(box.isTickFilledAt(box.entry.width() - 17), state == 1 || state == -1);
        QCOMPARE(box.changes.count(), 0);
        box.entry.click();
        QTEST(box.entry.state(), "toggled");
    }

    void pressShowsMixedAndReleaseToggles()
    {
        for (const bool byKeyboard : {false, true}) {
            Box box;
            byKeyboard ? QTest::keyPress(&box.entry, Qt::Key_Space) : QTest::mousePress(&box.entry, Qt::LeftButton);
            QCOMPARE(box.entry.checkboxImageName(), u"checkbox-mixed"_s);
            QCOMPARE(box.entry.state(), 1);
            QCOMPARE(box.changes.count(), 0);
            byKeyboard ? QTest::keyRelease(&box.entry, Qt::Key_Space) : QTest::mouseRelease(&box.entry, Qt::LeftButton);
            QCOMPARE(box.entry.state(), 0);
            QCOMPARE(box.changes.count(), 1);
        }
    }

    void contentIsShownAndRead()
    {
        Box box;
        QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&box.entry);
        QVERIFY(seen != nullptr);
        QCOMPARE(seen->role(), QAccessible::CheckBox);
        QVERIFY(seen->state().checked);
        seen->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(!seen->state().checked);
        QCOMPARE(box.entry.state(), 0);
        QCOMPARE(box.changes.count(), 1);
        const QImage plain = Box::pictureOf(box.entry, 1);
        box.entry.setContent(Content::Loading);
        QCOMPARE(seen->text(QAccessible::Name), u"Notes: …"_s);
        QCOMPARE(box.timers.runningCount(), std::size_t{1});
        box.entry.setContent(Content::Unreadable, u"Could not be read"_s);
        QCOMPARE(seen->text(QAccessible::Name), u"Notes: 7\nCould not be read"_s); // part of it could
        box.entry.setDataCounter(0);
        QCOMPARE(seen->text(QAccessible::Name), u"Notes: –\nCould not be read"_s);
        box.entry.setDataCounter(7);
        QCOMPARE(box.timers.runningCount(), std::size_t{0});
        box.entry.setContent(Content::Missing);
        QCOMPARE(seen->text(QAccessible::Name), u"Notes: 7"_s);
        QVERIFY(Box::pictureOf(box.entry, 1) != plain);
    }

    void longLabelsHaveRoom()
    {
        Box box;
        const int oneLine = box.entry.height();
        box.entry.setStringValue(u"Music and voice memos and a few words more: %i"_s);
        box.page.resize(box.page.minimumSizeHint().width(), 400);
        QCoreApplication::processEvents();
        QVERIFY(box.entry.height() >= box.entry.heightForWidth(box.entry.width()));
        QVERIFY(box.entry.heightForWidth(box.entry.width()) > oneLine);
    }
};

QTEST_MAIN(TestSelectDataEntry)

#include "TestSelectDataEntry.moc"
