#include "app/sample/DRSample.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestClock.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestSampleCalendar : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    DRTestClock m_clock;
    DRSampleResult m_sample;

private Q_SLOTS:
    void initTestCase()
    {
        m_sample = writeSample(m_folder.filePath(u"sample"_s), 2, m_clock);
        QVERIFY2(m_sample.isWritten, qPrintable(m_sample.message));
    }

    void storeIsWhatAnIPhoneHolds_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* what, const QString& sql, const QString& expected) {
            QTest::newRow(what) << sql << expected;
        };
        row("sound", u"SELECT * FROM pragma_integrity_check"_s, u"ok"_s);
        row("events", u"SELECT COUNT(*) FROM CalendarItem"_s, u"300"_s);
        row("calendars, one of them empty",
            u"SELECT COUNT(*) || ',' || SUM(ROWID NOT IN (SELECT calendar_id FROM CalendarItem)) FROM Calendar"_s,
            u"5,1"_s);
        row("rows of no event",
            u"SELECT COUNT(*) FROM (SELECT item_owner_id AS owner FROM Location UNION ALL SELECT owner_id FROM "
            u"Recurrence "
            "UNION ALL SELECT owner_id FROM Alarm UNION ALL SELECT owner_id FROM Participant) WHERE owner NOT IN "
            "(SELECT "
            "ROWID FROM CalendarItem)"_s,
            u"0"_s);
        row("what the events say of their rows",
            u"SELECT COUNT(*) FROM CalendarItem WHERE has_recurrences <> (ROWID IN (SELECT owner_id FROM Recurrence)) "
            u"OR "
            "has_attendees <> (ROWID IN (SELECT owner_id FROM Participant))"_s,
            u"0"_s);
        row("identities of the participants",
            u"SELECT COUNT(*) FROM Participant LEFT JOIN Identity ON Identity.ROWID = identity_id WHERE identity_id <> "
            u"0 "
            "AND address IS NOT 'mailto:' || email"_s,
            u"0"_s);
        row("whole days float",
            u"SELECT COUNT(*) FROM CalendarItem WHERE (start_tz IS '_float') <> (all_day OR due_all_day) OR (start_tz "
            u"IS "
            "'_float' AND CAST(start_date AS INTEGER) % 86400 <> 0)"_s,
            u"0"_s);
        row("alarms of both sorts", u"SELECT COUNT(trigger_date) > 1 AND COUNT(trigger_interval) > 1 FROM Alarm"_s,
            u"1"_s);
        row("alarms of neither sort or both",
            u"SELECT COUNT(*) FROM Alarm WHERE (trigger_date IS NULL) = (trigger_interval IS NULL)"_s, u"0"_s);
        row("each start of the week",
            u"SELECT COUNT(DISTINCT week_start) FROM Recurrence WHERE frequency = 2 AND week_start <= 7"_s, u"8"_s);
        row("dates in the file's years", // 1604 to 2030, in seconds since 2001
            u"SELECT COUNT(*) FROM CalendarItem WHERE start_date NOT BETWEEN -12527000000 AND 921000000"_s, u"0"_s);
        row("a moment within a second",
            u"SELECT COUNT(*) FROM CalendarItem WHERE start_date <> CAST(start_date AS INTEGER)"_s, u"2"_s);
        row("no title, and an empty one",
            u"SELECT SUM(summary IS NULL) || ',' || SUM(summary = '') FROM CalendarItem"_s, u"1,1"_s);
    }

    void storeIsWhatAnIPhoneHolds()
    {
        QFETCH(const QString, sql);
        QFETCH(const QString, expected);
        const QString store = sha1HexString(u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s);
        auto database = DRDatabase::open(m_sample.backupFolder + u'/' + store, DRDatabase::Profile::Source);
        QVERIFY(database);
        auto rows = database->executeQuery(sql);
        QVERIFY2(rows.next(), qPrintable(database->lastErrorMessage()));
        QCOMPARE(rows.stringAt(0), expected);
    }
};

QTEST_GUILESS_MAIN(TestSampleCalendar)
#include "TestSampleCalendar.moc"
