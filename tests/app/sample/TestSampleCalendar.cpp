#include "tests/app/sample/DRSampleFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

class TestSampleCalendar : public QObject {
    Q_OBJECT

    const DRSampleFixture m_sample{2};

private Q_SLOTS:
    void storeIsWhatAnIPhoneHolds_data()
    {
        const DRTestTable<QString, QString> row("sql", "expected");
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
        QTEST(DRSampleFixture::answer(m_sample.stored(u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s), sql),
              "expected");
    }
};

QTEST_GUILESS_MAIN(TestSampleCalendar)
#include "TestSampleCalendar.moc"
