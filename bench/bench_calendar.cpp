// The cost of an instance must not depend on how many events there are. Writing: the whole merge of recurring events with 101
// instances each into the database of an empty phone, in the computer's own zone (run with TZ unset), beside plain inserts of the
// same rows through one prepared statement; without and with an index of the phone on days. Reading: events with a recurrence, an alarm and two participants, with the iPhone's
// indexes and without any.

#include "convert/calendar/DRMigrateAndroidCalendar.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "convert/calendar/DRRecurrence.h"
#include "platform/core/DRDigest.h"
#include "platform/core/DRLocalCalendar.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.android.providers.calendar"_s;

constexpr qint64 kFirstDate = 1'400'000'000'000; ///< milliseconds since 1970
constexpr qint64 kEventApart = 3'600'000;
constexpr qint64 kEventLength = 1'800'000;
constexpr qint64 kInstancesPerEvent = 101;

const QString kPhoneTables =
    u"CREATE TABLE Calendars (_id INTEGER PRIMARY KEY, account_name TEXT, account_type TEXT, name TEXT, "
    "calendar_displayName TEXT, calendar_color INTEGER, calendar_access_level INTEGER, visible INTEGER, "
    "sync_events INTEGER, ownerAccount TEXT, canOrganizerRespond INTEGER);"
    "CREATE TABLE Events (_id INTEGER PRIMARY KEY AUTOINCREMENT, dirty INTEGER, calendar_id INTEGER NOT NULL, title "
    "TEXT, "
    "eventLocation TEXT, description TEXT, selfAttendeeStatus INTEGER, dtstart INTEGER, dtend INTEGER, "
    "eventTimezone TEXT, duration TEXT, allDay INTEGER, hasAlarm INTEGER, rrule TEXT, lastDate INTEGER, "
    "hasAttendeeData INTEGER, organizer STRING);"
    "CREATE TABLE Attendees (_id INTEGER PRIMARY KEY, event_id INTEGER, attendeeName TEXT, attendeeEmail TEXT, "
    "attendeeStatus INTEGER, attendeeRelationship INTEGER, attendeeType INTEGER);"
    "CREATE TABLE Reminders (_id INTEGER PRIMARY KEY, event_id INTEGER, minutes INTEGER, method INTEGER);"
    "CREATE TABLE Instances (_id INTEGER PRIMARY KEY, event_id INTEGER, begin INTEGER, end INTEGER, "
    "startDay INTEGER, endDay INTEGER, startMinute INTEGER, endMinute INTEGER, UNIQUE (event_id, begin, end));"_s;
const QString kPhoneIndex = u"CREATE INDEX instancesStartDayIndex ON Instances (startDay);"_s;

const QString kIPhoneTables =
    u"CREATE TABLE Calendar (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT);"
    "CREATE TABLE CalendarItem (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, summary TEXT, location_id INTEGER, "
    "description TEXT, start_date REAL, start_tz TEXT, end_date REAL, all_day INTEGER, calendar_id INTEGER, url TEXT, "
    "due_all_day INTEGER);"
    "CREATE TABLE Location (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT, item_owner_id INTEGER);"
    "CREATE TABLE Recurrence (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, frequency INTEGER, interval INTEGER, "
    "week_start INTEGER, cached_end_date REAL, end_date REAL, owner_id INTEGER);"
    "CREATE TABLE Alarm (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, trigger_date REAL, trigger_interval INTEGER, "
    "owner_id INTEGER);"
    "CREATE TABLE Participant (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, status INTEGER, owner_id INTEGER, email TEXT, "
    "is_self INTEGER);"
    "CREATE TABLE Identity (display_name TEXT, address TEXT, first_name TEXT, last_name TEXT);"_s;
const QString kIPhoneIndexes = u"CREATE INDEX LocationOwner ON Location (item_owner_id);"
                               "CREATE INDEX RecurrenceOwner ON Recurrence (owner_id);"
                               "CREATE INDEX AlarmOwner ON Alarm (owner_id);"
                               "CREATE INDEX ParticipantOwner ON Participant (owner_id);"
                               "CREATE UNIQUE INDEX IdentityAll ON Identity (display_name, address, first_name, "
                               "last_name);"_s;

constexpr qint32 kFrequencies = 4;

DRImportedCalendars makeCalendars(qint64 events)
{
    DRImportedCalendar calendar{.name = u"Home"_s, .calendarEvents = {}};
    for (qint64 i = 0; i < events; ++i) {
        const qint64 start = kFirstDate + i * kEventApart;
        calendar.calendarEvents.push_back(
            {.summary = u"Choir practice (%1)"_s.arg(i),
             .description = u"At the old mill"_s,
             .startDate = QDateTime::fromMSecsSinceEpoch(start, Qt::UTC),
             .timeZone = u"Europe/Berlin"_s,
             .endDate = QDateTime::fromMSecsSinceEpoch(start + kEventLength, Qt::UTC),
             .alarms = {{.date = QDateTime::fromMSecsSinceEpoch(start - kEventLength, Qt::UTC)}},
             .hasRecurrence = true,
             .recurrenceFrequency = static_cast<qint32>(i % kFrequencies) + 1 == kFrequencies
                                        ? 1 // a century of years ends after the limit of the distance
                                        : static_cast<qint32>(i % kFrequencies) + 1,
             .recurrenceInterval = 1});
    }
    return std::make_shared<std::vector<DRImportedCalendar>>(1, std::move(calendar));
}

/// The iPhone's side as a load leaves it.
std::shared_ptr<DRMigrateIPhoneCalendar> sourceOf(const DRTestServices& test, const DRImportedCalendars& calendars)
{
    auto source = std::make_shared<DRMigrateIPhoneCalendar>(test.services);
    source->setAllCalendars(calendars);
    source->setEntries(DREntryList(calendars->front().calendarEvents.size()));
    return source;
}

double peakMebibytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void countPer(benchmark::State& state, const char* name, qint64 rows)
{
    state.counters[name] = benchmark::Counter(static_cast<double>(rows), benchmark::Counter::kIsIterationInvariantRate |
                                                                             benchmark::Counter::kInvert);
    state.counters["peak MiB"] = peakMebibytes();
}

QString phoneDatabase(const DRTestServices& test)
{
    return test.root.filePath(u"work/%1/apps/%1/db/calendar.db"_s.arg(kPacketID));
}

bool makePhone(const DRTestServices& test, bool isIndexed)
{
    const QString path = phoneDatabase(test);
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path);
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    return database && database->executeScript(isIndexed ? kPhoneTables + kPhoneIndex : kPhoneTables);
}

qint64 rowsOf(const DRTestServices& test)
{
    auto database = DRDatabase::open(phoneDatabase(test), DRDatabase::Profile::Source);
    if (!database) {
        return 0;
    }
    DRResultSet row = database->executeQuery(u"SELECT COUNT(*) FROM Instances"_s);
    return row.next() ? row.integerAt(0) : 0;
}

void writeEvents(benchmark::State& state)
{
    DRTestServices test;
    const auto source = sourceOf(test, makeCalendars(state.range(0)));
    const qint64 rows = state.range(0) * kInstancesPerEvent;
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        const bool isMade = makePhone(test, state.range(1) != 0);
        state.ResumeTiming();
        DRMigrateAndroidCalendar target(test.services);
        target.setTargetPath(test.root.filePath(u"work"_s));
        target.setPacketID(kPacketID);
        const bool isWritten = isMade && target.mergeDataFrom(*source) && target.report().skipped.empty();
        state.PauseTiming();
        if (!isWritten || rowsOf(test) != rows) {
            state.SkipWithError("the events were not written");
            return;
        }
        state.ResumeTiming();
    }
    countPer(state, "per row", rows);
}

/// The rows of `Instances` alone, computed before the clock starts.
void insertRows(benchmark::State& state)
{
    DRTestServices test;
    const DRImportedCalendars calendars = makeCalendars(state.range(0));
    const DRLocalCalendar local;
    std::vector<std::vector<DRCalendarInstance>> instances;
    for (const DRImportedEvent& event : calendars->front().calendarEvents) {
        auto& rows = instances.emplace_back(DRRecurrence::furtherInstances(event, local));
        rows.insert(rows.begin(), DRCalendarInstance::first(DREventSpan::of(event), event.isAllDay));
    }
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        const bool isMade = makePhone(test, state.range(1) != 0);
        state.ResumeTiming();
        auto database = DRDatabase::open(phoneDatabase(test), DRDatabase::Profile::Phone);
        bool isDone = isMade && database;
        DRTransaction transaction(*database);
        {
            DRStatement insert = database->prepare(u"INSERT INTO Instances (event_id, begin, end, startDay, endDay, "
                                                   "startMinute, endMinute) VALUES (?, ?, ?, ?, ?, ?, ?)"_s);
            qint64 eventId = 0;
            for (const auto& rows : instances) {
                ++eventId;
                for (const DRCalendarInstance& row : rows) {
                    isDone = isDone && insert.update({eventId, *row.begin, *row.end, row.startDay, row.endDay,
                                                      row.startMinute, row.endMinute});
                }
            }
        }
        if (!isDone || !transaction.commit()) {
            state.SkipWithError("the rows were not inserted");
            return;
        }
    }
    countPer(state, "per row", state.range(0) * kInstancesPerEvent);
}

void expandEvents(benchmark::State& state)
{
    const DRImportedCalendars calendars = makeCalendars(state.range(0));
    const DRLocalCalendar local;
    for ([[maybe_unused]] auto iteration : state) {
        for (const DRImportedEvent& event : calendars->front().calendarEvents) {
            benchmark::DoNotOptimize(DRRecurrence::furtherInstances(event, local));
        }
    }
    countPer(state, "per row", state.range(0) * kInstancesPerEvent);
}

bool writeEventRows(DRDatabase& database, qint64 events)
{
    DRStatement item = database.prepare(
        u"INSERT INTO CalendarItem (ROWID, summary, description, start_date, start_tz, end_date, all_day, calendar_id, "
        "due_all_day) VALUES (?, ?, 'At the old mill', ?, 'Europe/Berlin', ?, 0, ?, 0)"_s);
    DRStatement location = database.prepare(u"INSERT INTO Location (title, item_owner_id) VALUES ('Mill', ?)"_s);
    DRStatement recurrence = database.prepare(
        u"INSERT INTO Recurrence (frequency, interval, week_start, end_date, owner_id) VALUES (2, 1, 1, 0, ?)"_s);
    DRStatement alarm = database.prepare(u"INSERT INTO Alarm (trigger_interval, owner_id) VALUES (-900, ?)"_s);
    DRStatement participant =
        database.prepare(u"INSERT INTO Participant (status, owner_id, email, is_self) VALUES (1, ?, ?, 0)"_s);
    DRStatement identity =
        database.prepare(u"INSERT INTO Identity (address, first_name, last_name) VALUES (?, 'Ada', 'Vogt')"_s);
    bool isDone = true;
    for (qint64 id = 1; id <= events; ++id) {
        constexpr qint64 kCalendars = 5;
        const QString email = u"p%1@example.com"_s.arg(id);
        const qint64 start = 400'000'000 + id * 3600;
        isDone =
            isDone && item.update({id, u"Choir practice (%1)"_s.arg(id), start, start + 1800, id % kCalendars + 1}) &&
            location.update({id}) && recurrence.update({id}) && alarm.update({id}) && participant.update({id, email}) &&
            participant.update({id, u"p1@example.com"_s}) && identity.update({u"mailto:"_s + email});
    }
    return isDone;
}

bool writeBackup(const QString& folder, qint64 events, bool isIndexed)
{
    QDir().mkpath(folder);
    const QString path = folder + u'/' + sha1HexString(u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s);
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    if (!database || !database->executeScript(kIPhoneTables + (isIndexed ? kIPhoneIndexes : QString()))) {
        return false;
    }
    DRTransaction transaction(*database);
    return database->executeScript(u"INSERT INTO Calendar (title) VALUES ('a'), ('b'), ('c'), ('d'), ('e')"_s) &&
           writeEventRows(*database, events) && transaction.commit();
}

void readEvents(benchmark::State& state)
{
    DRTestServices test;
    const QString folder = test.root.filePath(u"backup"_s);
    if (!writeBackup(folder, state.range(0), state.range(1) != 0)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhoneCalendar source(test.services);
        source.setSourcePath(folder);
        if (!source.load() || source.report().found != state.range(0)) {
            state.SkipWithError("the events were not read");
            return;
        }
    }
    countPer(state, "per event", state.range(0));
}

} // namespace

BENCHMARK(insertRows)
    ->ArgNames({"events", "indexed"})
    ->ArgsProduct({{1'000, 10'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(writeEvents)
    ->ArgNames({"events", "indexed"})
    ->ArgsProduct({{1'000, 10'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(expandEvents)->ArgName("events")->Arg(1'000)->Unit(benchmark::kMillisecond);
BENCHMARK(readEvents)
    ->ArgNames({"events", "indexed"})
    ->ArgsProduct({{1'000, 10'000}, {1, 0}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
