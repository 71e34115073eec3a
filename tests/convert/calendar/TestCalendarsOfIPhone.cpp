#include "convert/calendar/DRCalendarReader.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/convert/DRConverterFixture.h"
#include "tests/support/DRTestTable.h"

#include <QFile>
#include <QRandomGenerator>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString kItems = u"CREATE TABLE %1 (ROWID INTEGER PRIMARY KEY, summary TEXT, description TEXT, start_date REAL, "
                       "start_tz TEXT, end_date REAL, all_day INTEGER, calendar_id INTEGER, url TEXT, due_all_day "
                       "INTEGER);"_s;
const QString kCalendar = u"CREATE TABLE Calendar (ROWID INTEGER PRIMARY KEY, title TEXT);"_s;
const QString kDetails =
    u"CREATE TABLE Location (ROWID INTEGER PRIMARY KEY, title TEXT, item_owner_id INTEGER);"
    "CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY, frequency INTEGER, interval INTEGER, week_start INTEGER, "
    "cached_end_date REAL, end_date REAL, owner_id INTEGER, event_id INTEGER);"
    "CREATE TABLE Alarm (ROWID INTEGER PRIMARY KEY, trigger_date REAL, trigger_interval INTEGER, owner_id INTEGER);"
    "CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY, status INTEGER, owner_id INTEGER, email TEXT, is_self "
    "INTEGER);"
    "CREATE TABLE Identity (display_name TEXT, address TEXT, first_name TEXT, last_name TEXT);"_s;
const QString kIndexes = u"CREATE INDEX i1 ON CalendarItem (calendar_id); CREATE INDEX i2 ON Location (item_owner_id);"
                         "CREATE INDEX i3 ON Recurrence (owner_id); CREATE INDEX i4 ON Alarm (owner_id);"
                         "CREATE INDEX i5 ON Participant (owner_id); CREATE INDEX i6 ON Event (calendar_id);"
                         "CREATE INDEX i7 ON Identity (display_name, address, first_name, last_name);"_s;

const QString kAll = kCalendar + kItems.arg(u"CalendarItem"_s) + kItems.arg(u"Event"_s) + kDetails;

QDateTime fromReference(double seconds)
{
    return DRDates::fromReferenceSeconds(seconds);
}

/// The stated statements, run one by one for each calendar, event and participant.
class StatedReader {
public:
    explicit StatedReader(DRDatabase& database) : m_database(database) {}

    std::vector<DRImportedCalendar> calendars()
    {
        std::vector<DRImportedCalendar> calendars;
        DRResultSet row = m_database.executeQuery(u"SELECT * FROM Calendar"_s);
        while (row.next()) {
            const qint64 id = row.integer("ROWID");
            const bool isNew = hasRow(u"SELECT * FROM CalendarItem WHERE calendar_id=%1"_s.arg(id));
            DRResultSet event = m_database.executeQuery(
                u"SELECT * FROM %1 WHERE calendar_id=%2"_s.arg(isNew ? u"CalendarItem"_s : u"Event"_s).arg(id));
            DRImportedCalendar calendar{.name = row.string("title"), .calendarEvents = {}};
            while (event.next()) {
                calendar.calendarEvents.push_back(eventOf(event));
            }
            calendars.push_back(calendar);
        }
        return calendars;
    }

private:
    bool hasRow(const QString& sql) { return m_database.executeQuery(sql).next(); }

    DRImportedEvent eventOf(const DRResultSet& row)
    {
        const qint64 id = row.integer("ROWID");
        DRImportedEvent event{.summary = row.string("summary"),
                              .description = row.string("description"),
                              .startDate = fromReference(row.real("start_date")),
                              .timeZone = row.string("start_tz"),
                              .isAllDay = row.integer("all_day") != 0 || row.integer("due_all_day") != 0,
                              .url = row.string("url")};
        if (!event.isAllDay) {
            event.endDate = fromReference(row.real("end_date"));
        }
        DRResultSet location = m_database.executeQuery(u"SELECT * FROM Location WHERE item_owner_id=%1"_s.arg(id));
        if (location.next()) {
            event.location = DRImportedLocation{.title = location.string("title")};
        }
        addRecurrence(event, id);
        DRResultSet alarm = m_database.executeQuery(u"SELECT * FROM Alarm WHERE owner_id=%1"_s.arg(id));
        while (alarm.next()) {
            event.alarms.push_back(
                {.date =
                     fromReference(alarm.isNull("trigger_date")
                                       ? row.real("start_date") + static_cast<double>(alarm.integer("trigger_interval"))
                                       : alarm.real("trigger_date"))});
        }
        addParticipants(event, id);
        return event;
    }

    void addRecurrence(DRImportedEvent& event, qint64 id)
    {
        const QString byOwner = u"SELECT * FROM Recurrence WHERE owner_id=%1"_s.arg(id);
        DRResultSet row = m_database.executeQuery(
            hasRow(byOwner) ? byOwner : u"SELECT * FROM Recurrence WHERE event_id=%1"_s.arg(id));
        event.hasRecurrence = row.next();
        if (!event.hasRecurrence) {
            return;
        }
        event.recurrenceFrequency = static_cast<qint32>(row.integer("frequency"));
        event.recurrenceInterval = static_cast<qint32>(row.integer("interval"));
        event.weekStart = static_cast<qint32>(row.integer("week_start"));
        for (const char* column : {"end_date", "cached_end_date"}) {
            if (!row.isNull(column) && row.real(column) > 1.0) {
                event.recurrenceEndDate = fromReference(row.real(column));
            }
        }
    }

    void addParticipants(DRImportedEvent& event, qint64 id)
    {
        QString own;
        DRResultSet row = m_database.executeQuery(u"SELECT * FROM Participant WHERE owner_id=%1"_s.arg(id));
        while (row.next()) {
            const QString email = row.string("email");
            if (row.integer("is_self") != 0) {
                own = email.isNull() ? own : email;
            } else if (!email.isNull()) {
                event.participants.push_back({.name = nameOf(email), .email = email, .status = row.integer("status")});
            }
        }
        if (!own.isNull()) {
            std::erase_if(event.participants, [&](const auto& one) { return one.email.toLower() == own.toLower(); });
        }
    }

    QString nameOf(const QString& email)
    {
        DRResultSet row = m_database.executeQuery(u"SELECT * FROM Identity WHERE address='mailto:%1'"_s.arg(email));
        if (!row.next()) {
            return email;
        }
        const QString first = row.string("first_name");
        const QString last = row.string("last_name");
        if (!first.isNull() && !last.isNull()) {
            return u"%1 %2"_s.arg(first, last);
        }
        for (const QString& name : {first, last, row.string("display_name")}) {
            if (!name.isNull()) {
                return name;
            }
        }
        return email;
    }

    DRDatabase& m_database;
};

/// Rows of few values each, so that owners, addresses and calendars meet, miss and repeat.
QString generatedRows(QRandomGenerator& random)
{
    const auto one = [&](const QStringList& values) { return values.at(random.bounded(values.size())); };
    const auto number = [&](int end) {
        return one({QString::number(random.bounded(end)), u"NULL"_s, u"'x'"_s, u"2.5"_s});
    };
    const auto id = [&] { return random.bounded(4) == 0 ? number(30) : QString::number(random.bounded(30)); };
    const auto address = [&](const QString& prefix) {
        return one({u"NULL"_s, u"''"_s, u"'%1a@x'"_s.arg(prefix), u"'%1A@X'"_s.arg(prefix), u"'%1b@x'"_s.arg(prefix),
                    u"'%1o''b@x'"_s.arg(prefix), u"'%1o''''b@x'"_s.arg(prefix)});
    };
    const auto name = [&] { return one({u"NULL"_s, u"''"_s, u"'Ada'"_s, u"'Bo'"_s}); };
    const auto date = [&] {
        return one({u"NULL"_s, u"0"_s, u"1.0"_s, u"1.5"_s, u"4e8"_s, u"9e999"_s, u"-9e999"_s, u"-4e8"_s});
    };
    QString script;
    const auto insert = [&](const QString& table, const QStringList& values) {
        script += u"INSERT INTO %1 VALUES (%2);"_s.arg(table, values.join(u','));
    };
    for (int i = 0; i < 4; ++i) {
        insert(u"Calendar"_s, {u"NULL"_s, name()});
    }
    for (int i = 0; i < 25; ++i) {
        insert(one({u"CalendarItem"_s, u"Event"_s}),
               {u"NULL"_s, name(), name(), date(), name(), date(), number(2), number(6), name(), number(2)});
        insert(u"Location"_s, {u"NULL"_s, name(), id()});
        insert(u"Recurrence"_s, {u"NULL"_s, number(6), number(3), number(8), date(), date(), id(), id()});
        insert(u"Alarm"_s, {u"NULL"_s, date(), number(900), id()});
        for (int j = 0; j < 3; ++j) {
            insert(u"Participant"_s,
                   {u"NULL"_s, number(9), id(), address({}), one({u"NULL"_s, u"0"_s, u"0"_s, u"1"_s})});
        }
        insert(u"Identity"_s, {name(), address(u"mailto:"_s), name(), name()});
    }
    return script;
}

} // namespace

class TestCalendarsOfIPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRConverterFixture> m_test;

    [[nodiscard]] QString path() const { return m_test->backedUp(u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s); }
    [[nodiscard]] bool run(const QString& script) const
    {
        // One transaction: every insert alone would wait for the disk.
        return DRConverterFixture::run(path(), u"BEGIN;%1;COMMIT;"_s.arg(script));
    }
    [[nodiscard]] auto side() const { return m_test->iPhoneSide<DRMigrateIPhoneCalendar>(); }

private Q_SLOTS:
    void init() { m_test = std::make_unique<DRConverterFixture>(); }

    void equalsTheStatedStatements_data()
    {
        const DRTestTable<QString, QString> row("indexes", "change");
        // Copies whose columns have no type keep the values that are given to them.
        QString texts;
        for (const auto& [table, key] : {std::pair{u"CalendarItem"_s, u"calendar_id"_s},
                                         {u"Recurrence"_s, u"owner_id"_s},
                                         {u"Alarm"_s, u"owner_id"_s},
                                         {u"Participant"_s, u"owner_id"_s}}) {
            texts += u"CREATE TABLE copy AS SELECT * FROM %1; DROP TABLE %1; ALTER TABLE copy RENAME TO %1;"
                     "ALTER TABLE %1 ADD COLUMN other TEXT; UPDATE %1 SET other=%2; ALTER TABLE %1 DROP COLUMN %2;"
                     "ALTER TABLE %1 RENAME COLUMN other TO %2;"_s.arg(table, key);
        }
        row("keys are texts", {}, texts);
        row("plain", {}, {});
        row("indexed", kIndexes, {});
        row("older layout", {}, u"DROP TABLE CalendarItem;"_s);
        row("no details", {},
            u"DROP TABLE Location; DROP TABLE Recurrence; DROP TABLE Alarm; DROP TABLE "
            "Participant; DROP TABLE Identity;"_s);
        row("other columns", {},
            u"ALTER TABLE Recurrence DROP COLUMN owner_id; ALTER TABLE Identity DROP "
            "COLUMN first_name; ALTER TABLE CalendarItem DROP COLUMN due_all_day;"_s);
    }

    void equalsTheStatedStatements()
    {
        QFETCH(QString, indexes);
        QFETCH(QString, change);
        QRandomGenerator random(20140304);
        for (int round = 0; round < 12; ++round) {
            QFile::remove(path());
            QVERIFY(run(kAll + indexes + generatedRows(random) + change));
            auto database = DRDatabase::open(path(), DRDatabase::Profile::Source);
            QVERIFY(database);
            const DRCalendarReading reading = readCalendars(*database);
            QVERIFY(reading.isComplete);
            QVERIFY(reading.eventCount > 0);
            QVERIFY(reading.calendars == StatedReader(*database).calendars());
        }
    }

    void newerAlarmsNameTheirOwnerOtherwise()
    {
        QVERIFY(run(kAll + u"INSERT INTO Calendar VALUES (1, 'c');"
                           "INSERT INTO CalendarItem (ROWID, start_date, calendar_id) VALUES (5, 1000, 1);"
                           "INSERT INTO Alarm VALUES (1, NULL, -900, 5), (2, 7, -900, 5);"
                           "ALTER TABLE Alarm RENAME COLUMN owner_id TO calendaritem_owner_id"_s));
        const auto source = side();
        QVERIFY(source->load());
        const std::vector<DRImportedAlarm> alarms{{.date = fromReference(100)}, {.date = fromReference(7)}};
        QCOMPARE(source->allCalendars()->front().calendarEvents.front().alarms, alarms);
        QVERIFY(source->report().warnings.isEmpty());
    }

    void everythingIsCounted()
    {
        QVERIFY(run(kAll + u"INSERT INTO Calendar VALUES (1, 'new'), (2, 'old'), (3, 'empty');"
                           "INSERT INTO CalendarItem (calendar_id) VALUES (1), (1), (8), (NULL);"
                           "INSERT INTO Event (calendar_id) VALUES (1), (2);"
                           "INSERT INTO Alarm VALUES (1, 5, 5, 1), (2, 5, 5, 1);"
                           "ALTER TABLE Alarm RENAME COLUMN owner_id TO item;"_s));
        const auto source = side();
        QVERIFY(source->load());
        QCOMPARE(source->report().found, 3);
        QCOMPARE(source->entries()->size(), 3U);
        QCOMPARE(source->report().counts.at(u"calendars"_s), 3);
        QCOMPARE(source->report().warnings,
                 (QStringList{u"Events left over from an older system, which are not moved: 1"_s,
                              u"Alarms without a word of their events, which are not moved: 2"_s}));
        QCOMPARE(source->report().skipped.size(), 1U);
        QCOMPARE(source->report().skipped.front().what, u"Events: 2"_s);
    }

    void databaseOfAnotherLayoutIsTold()
    {
        QVERIFY(run(u"CREATE TABLE x (y)"_s));
        const auto source = side();
        QVERIFY(source->load());
        QVERIFY(source->allCalendars()->empty());
        QCOMPARE(source->report().skipped.size(), 1U);
    }

    /// A damaged table never passes for an empty one.
    void damageIsTold_data()
    {
        const DRTestTable<QString, bool> row("table", "isLoaded");
        for (const char* table : {"Location", "Recurrence", "Alarm", "Participant", "Identity", "Event"}) {
            row(table, QString::fromLatin1(table), true);
        }
        row("Calendar", u"Calendar"_s, false);
        row("CalendarItem", u"CalendarItem"_s, false);
        row("the schema", u"sqlite_master"_s, false);
    }

    void damageIsTold()
    {
        QFETCH(QString, table);
        QVERIFY(
            run(kAll + u"INSERT INTO Calendar VALUES (1, 'c'); INSERT INTO CalendarItem (calendar_id) VALUES (1);"_s));
        qint64 page = 1;
        if (auto database = DRDatabase::open(path(), DRDatabase::Profile::Source)) {
            DRResultSet row =
                database->executeQuery(u"SELECT rootpage FROM sqlite_master WHERE name='%1'"_s.arg(table));
            page = row.next() ? row.integerAt(0) : 1;
        }
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.seek(page == 1 ? 100 : (page - 1) * 4096));
        QCOMPARE(file.write(QByteArray(64, 'x')), 64);
        file.close();
        const auto source = side();
        QTEST(source->load(), "isLoaded");
        QCOMPARE(source->report().skipped.size(), 1U);
        QVERIFY(!source->report().isNotInBackup);
    }

    void backupsWithoutCalendar()
    {
        const auto source = side();
        QVERIFY(!source->load());
        QVERIFY(source->report().isNotInBackup);
        source->setSourcePath({});
        QVERIFY(!source->load());
    }
};

QTEST_GUILESS_MAIN(TestCalendarsOfIPhone)
#include "TestCalendarsOfIPhone.moc"
