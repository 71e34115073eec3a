#include "convert/calendar/DRMigrateAndroidCalendar.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/convert/DRConverterFixture.h"
#include "tests/support/DRTestTable.h"
#include "tests/support/DRTestTimeZone.h"

using namespace Qt::StringLiterals;

namespace {

const QString kTables =
    u"CREATE TABLE Calendars (_id INTEGER PRIMARY KEY, account_name TEXT, account_type TEXT, name TEXT, "
    "calendar_displayName TEXT, calendar_color INTEGER, calendar_access_level INTEGER, visible INTEGER NOT NULL "
    "DEFAULT "
    "1, sync_events INTEGER NOT NULL DEFAULT 0, ownerAccount TEXT, canOrganizerRespond INTEGER NOT NULL DEFAULT 1);"
    "CREATE TABLE Events (_id INTEGER PRIMARY KEY AUTOINCREMENT, dirty INTEGER, calendar_id INTEGER NOT NULL, title "
    "TEXT, eventLocation TEXT, description TEXT, selfAttendeeStatus INTEGER, dtstart INTEGER, dtend INTEGER, "
    "eventTimezone TEXT, duration TEXT, allDay INTEGER, hasAlarm INTEGER, rrule TEXT, lastDate INTEGER, "
    "hasAttendeeData INTEGER, organizer STRING);"
    "CREATE TABLE Attendees (_id INTEGER PRIMARY KEY, event_id INTEGER, attendeeName TEXT, attendeeEmail TEXT, "
    "attendeeStatus INTEGER, attendeeRelationship INTEGER, attendeeType INTEGER);"
    "CREATE TABLE Reminders (_id INTEGER PRIMARY KEY, event_id INTEGER, minutes INTEGER, method INTEGER);"
    "CREATE TABLE Instances (_id INTEGER PRIMARY KEY, event_id INTEGER, begin INTEGER, end INTEGER, startDay INTEGER, "
    "endDay INTEGER, startMinute INTEGER, endMinute INTEGER, UNIQUE (event_id, begin, end));"_s;

QDateTime moment(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

constexpr qint64 kStart = 1'393'934'400'000; ///< 2014-03-04 12:00:00 UTC, a Tuesday
constexpr qint64 kHour = 3'600'000;

DRImportedEvent weekly(qint32 interval)
{
    return {.summary = u"Choir"_s,
            .startDate = moment(kStart),
            .endDate = moment(kStart + kHour),
            .hasRecurrence = true,
            .recurrenceFrequency = 2,
            .recurrenceInterval = interval,
            .weekStart = 7};
}

} // namespace

class TestCalendarsOnPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRConverterFixture> m_test;

    [[nodiscard]] QString database() const { return m_test->inApp(u"db/calendar.db"_s); }
    [[nodiscard]] bool run(const QString& script) const { return DRConverterFixture::run(database(), script); }
    [[nodiscard]] auto phoneSide() const { return m_test->phoneSide<DRMigrateAndroidCalendar>(); }

    [[nodiscard]] std::shared_ptr<DRMigrateIPhoneCalendar>
    sourceOf(const std::vector<std::vector<DRImportedEvent>>& calendars) const
    {
        auto source = std::make_shared<DRMigrateIPhoneCalendar>(m_test->test.services);
        std::vector<DRImportedCalendar> all;
        std::size_t count = 0;
        for (const auto& events : calendars) {
            all.push_back({.name = u"a calendar"_s, .calendarEvents = events});
            count += events.size();
        }
        source->setAllCalendars(std::make_shared<std::vector<DRImportedCalendar>>(std::move(all)));
        source->setEntries(DREntryList(count));
        return source;
    }

    [[nodiscard]] DRMigrateReport merge(const std::vector<std::vector<DRImportedEvent>>& calendars) const
    {
        const auto target = phoneSide();
        return target->mergeDataFrom(*sourceOf(calendars)) ? target->report() : DRMigrateReport{.found = -1};
    }

    /// Every row, one per line, without its number.
    [[nodiscard]] QString rows(const QString& table, const QString& condition = u"1"_s) const
    {
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Source);
        QString lines;
        DRResultSet row = opened->executeQuery(u"SELECT * FROM %1 WHERE %2 ORDER BY ROWID"_s.arg(table, condition));
        while (row.next()) {
            QStringList values;
            for (int column = 1; column < row.columnCount(); ++column) {
                values << (row.isNullAt(column) ? u"-"_s : row.stringAt(column));
            }
            lines += values.join(u'|') + u'\n';
        }
        return row.hasFailed() ? u"cannot be read"_s : lines;
    }

private Q_SLOTS:

    void init()
    {
        m_test = std::make_unique<DRConverterFixture>(u"com.android.providers.calendar"_s);
        QVERIFY(run(kTables));
    }

    void eventBecomesRows()
    {
        const DRMigrateReport report =
            merge({{},
                   {{.summary = u"It's \"lunch\""_s,
                     .description = u"soup"_s,
                     .startDate = moment(kStart + 999),
                     .timeZone = u"Europe/Berlin"_s,
                     .endDate = moment(kStart + kHour),
                     .location = DRImportedLocation{.title = u"Mill"_s},
                     .alarms = {{.date = moment(kStart - 90'000)}, {.date = moment(kStart + kHour)}},
                     .participants = {{.name = u"Ada"_s, .email = u"a@x"_s, .status = 3}, {.name = u"B"_s}}}}});
        QCOMPARE(report.found, 1);
        QCOMPARE(report.written, 1);
        QVERIFY(report.skipped.empty());
        QCOMPARE(rows(u"Calendars"_s),
                 u"SYNCML_ORPHANED|LOCAL|Phone Calendar|Phone Calendar|-13018477|5000|1|1| |1\n"_s);
        QCOMPARE(rows(u"Events"_s), u"1|1|It's \"lunch\"|Mill|soup|1|1393934400999|1393938000000|Europe/Berlin|-|0|1|-|"
                                    "1393938000000|1| \n"_s);
        QCOMPARE(rows(u"Attendees"_s), u"1|-| |1|2|1\n1|Ada|a@x|3|2|1\n1|B| |0|2|1\n"_s);
        QCOMPARE(rows(u"Instances"_s), u"1|1393934400999|1393938000000|2456721|2456721|720|780\n"_s);
        QCOMPARE(rows(u"Reminders"_s), u"1|1|1\n1|-59|1\n"_s);
    }

    void eventsGoToTheFirstCalendar()
    {
        QVERIFY(run(u"INSERT INTO Calendars (_id, name) VALUES (7, 'Work'), (9, 'Home')"_s));
        QCOMPARE(
            merge({{{.startDate = moment(0), .isAllDay = true}}, {{.startDate = moment(5000), .endDate = moment(1)}}})
                .written,
            2);
        QCOMPARE(rows(u"Calendars"_s).count(u'\n'), 2);
        QCOMPARE(rows(u"Events"_s), u"1|7|-|-|-|1|0|0|-|-|1|0|-|0|1| \n1|7|-|-|-|1|5000|5000|-|-|0|0|-|5000|1| \n"_s);
        QCOMPARE(rows(u"Reminders"_s), QString());
    }

    void calendarThatCannotBeMadeIsNumberOne()
    {
        QVERIFY(run(u"CREATE TRIGGER no BEFORE INSERT ON Calendars BEGIN SELECT RAISE(ABORT, 'no'); END"_s));
        QCOMPARE(merge({{{.startDate = moment(0)}}}).written, 1);
        QVERIFY(rows(u"Events"_s).startsWith(u"1|1|"_s));
    }

    void recurringEventBecomesRows()
    {
        DRImportedEvent event = weekly(2);
        event.recurrenceEndDate = moment(kStart + kHour * 24 * 28);
        event.endDate = {};
        event.isAllDay = true;
        QVERIFY(merge({{event}}).skipped.empty());
        QCOMPARE(rows(u"Events"_s),
                 u"1|1|Choir|-|-|1|1393934400000|-|-|P1S|1|0|FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=TU|"
                 "1396353600000|1| \n"_s);
        QCOMPARE(rows(u"Instances"_s), u"1|1393934400000|1393934400000|2456721|2456721|720|720\n"
                                       "1|1395144000000|1395144001000|2456735|2456735|720|720\n"
                                       "1|1396353600000|1396353601000|2456749|2456749|720|720\n"_s);
    }

    void stepsFollowTheZone()
    {
        const DRTestTimeZone chosen(u"Europe/Berlin"_s);
        const auto target = phoneSide();
        QVERIFY(target->mergeDataFrom(*sourceOf({{weekly(4)}})));
        QVERIFY(rows(u"Instances"_s).section(u'\n', 1, 1).startsWith(u"1|1396350000000|1396353600000|"_s));
    }

    void refusedCalendarIsTold()
    {
        QVERIFY(run(
            u"DELETE FROM Calendars; CREATE TRIGGER c BEFORE INSERT ON Calendars BEGIN SELECT RAISE(IGNORE); END"_s));
        const DRMigrateReport report = merge({{weekly(1)}});
        QCOMPARE(report.written, 1);
        QCOMPARE(report.skipped.size(), 1U);
        QVERIFY(rows(u"Events"_s).startsWith(u"1|1|Choir|"_s)); // its calendar has the number 1 all the same
    }

    void intervalOfNothingIsNoLoss()
    {
        DRImportedEvent zeroLength = weekly(0);
        zeroLength.endDate = zeroLength.startDate;
        const DRMigrateReport report = merge({{weekly(0), zeroLength}});
        QCOMPARE(report.written, 2);
        QVERIFY(report.skipped.empty());
        QCOMPARE(rows(u"Instances"_s, u"event_id=1"_s).count(u'\n'), 1);
        QCOMPARE(rows(u"Instances"_s, u"event_id=2"_s).count(u'\n'), 2);
    }

    void refusedRowsAreTold()
    {
        QVERIFY(run(u"CREATE TRIGGER e BEFORE INSERT ON Events WHEN NEW.title='bad' BEGIN SELECT RAISE(ABORT, 'bad "
                    "title'); END;"
                    "CREATE TRIGGER i BEFORE INSERT ON Instances WHEN NEW.begin>1396000000000 BEGIN SELECT "
                    "RAISE(IGNORE); END;"
                    "CREATE TRIGGER a BEFORE INSERT ON Attendees WHEN NEW.attendeeName='x' BEGIN SELECT RAISE(ABORT, "
                    "'no x'); END;"_s));
        DRImportedEvent bad = weekly(1);
        bad.summary = u"bad"_s;
        DRImportedEvent good = weekly(1);
        good.participants = {{.name = u"x"_s}, {.name = u"y"_s}, {.name = u"x"_s}};
        const DRMigrateReport report = merge({{bad, good}});
        QCOMPARE(report.found, 2);
        QCOMPARE(report.written, 1);
        const std::vector<DRMigrateSkippedItem> skipped{
            {.what = u"The event “bad” of 2014-03-04"_s, .why = u"bad title"_s},
            {.what = u"Entries in the calendar of the event “Choir” of 2014-03-04: 97"_s,
             .why = u"the phone's database refused it"_s},
            {.what = u"Attendees of the event “Choir” of 2014-03-04: 2"_s, .why = u"no x"_s}};
        QCOMPARE(report.skipped, skipped);
        QCOMPARE(rows(u"Instances"_s).count(u'\n'), 4);
        QCOMPARE(rows(u"Attendees"_s).count(u'\n'), 2);
    }

    /// What cannot take events stays as it is on the phone, and the user is told.
    void uselessDatabasesAreLeftAlone_data()
    {
        const DRTestTable<QString, QString> row("script", "why");
        row("no table", u"DROP TABLE Reminders"_s, u"the calendar database of this phone has no Reminders"_s);
        row("no column", u"ALTER TABLE Events DROP COLUMN rrule"_s,
            u"the calendar database of this phone has no Events.rrule"_s);
        row("takes none", u"CREATE TRIGGER e BEFORE INSERT ON Events BEGIN SELECT RAISE(IGNORE); END"_s,
            u"the phone's database refused it"_s);
    }

    void uselessDatabasesAreLeftAlone()
    {
        QFETCH(QString, script);
        QVERIFY(run(script));
        const auto target = phoneSide();
        QVERIFY(target->mergeDataFrom(*sourceOf({{weekly(1)}})));
        QVERIFY(target->ignoreDataType());
        QCOMPARE(target->report().skipped.size(), 1U);
        QTEST(target->report().skipped.front().why, "why");
        QCOMPARE(target->report().written, 0);
        QCOMPARE(rows(u"Calendars"_s), QString());
        QVERIFY(target->save());
    }

    void manyRefusedEventsAreCounted()
    {
        QVERIFY(run(u"CREATE TRIGGER e BEFORE INSERT ON Events BEGIN SELECT RAISE(ABORT, 'no'); END"_s));
        const DRMigrateReport report = merge({std::vector<DRImportedEvent>(250, DRImportedEvent())});
        QCOMPARE(report.skipped.size(), 201U);
        QCOMPARE(report.skipped.back().what, u"Further events and parts of them: 50"_s);
    }

    /// Nothing is written once the transaction is lost, wherever that happens.
    void lostTransactionFails_data()
    {
        const DRTestTable<QString> row("table");
        for (const char* table : {"Calendars", "Events", "Attendees", "Instances", "Reminders"}) {
            row(table, QString::fromLatin1(table));
        }
    }

    void lostTransactionFails()
    {
        QFETCH(QString, table);
        QVERIFY(run(u"CREATE TRIGGER r BEFORE INSERT ON %1 BEGIN SELECT RAISE(ROLLBACK, 'lost'); END"_s.arg(table)));
        DRImportedEvent event = weekly(1);
        event.alarms = {{.date = moment(0)}};
        const auto target = phoneSide();
        QVERIFY(!target->mergeDataFrom(*sourceOf({{weekly(1), event, weekly(1)}})));
        QCOMPARE(target->report().written, 0);
        QCOMPARE(target->report().skipped.back(), (DRMigrateSkippedItem{.what = u"All events"_s, .why = u"lost"_s}));
        for (const QString& written : {u"Calendars"_s, u"Events"_s, u"Attendees"_s, u"Instances"_s, u"Reminders"_s}) {
            QCOMPARE(rows(written), QString());
        }
    }

    void missingDatabaseFails()
    {
        QVERIFY(QFile::remove(database()));
        QCOMPARE(merge({}).found, -1);
    }

    void absurdDatesAreWritten()
    {
        const qint64 latest = std::numeric_limits<qint64>::max();
        const qint64 earliest = std::numeric_limits<qint64>::min();
        DRImportedEvent event = weekly(1);
        event.startDate = moment(earliest);
        event.endDate = moment(latest);
        event.alarms = {{.date = moment(latest)}};
        QVERIFY(merge({{event, {.summary = u"no date at all"_s}}}).skipped.empty());
        QCOMPARE(rows(u"Instances"_s), u"1|%1|%2|-106749550579|106754431755|1007|432\n"
                                       "2|-|-|2440588|2440588|0|0\n"_s.arg(earliest)
                                           .arg(latest));
        QCOMPARE(rows(u"Reminders"_s), u"1|-153722867280912|1\n"_s);
    }

    void packetWithoutManifestIsLeftOut()
    {
        const auto target = phoneSide();
        target->setIgnoreDataType(true);
        QVERIFY(target->mergeDataFrom(*sourceOf({{weekly(1)}})));
        QCOMPARE(rows(u"Events"_s), QString());
        QVERIFY(target->save());
    }
};

QTEST_GUILESS_MAIN(TestCalendarsOnPhone)
#include "TestCalendarsOnPhone.moc"
