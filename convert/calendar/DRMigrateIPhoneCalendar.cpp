#include "convert/calendar/DRMigrateIPhoneCalendar.h"

#include "convert/calendar/DRCalendarReader.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRLog.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kCalendarDatabase = u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s;

/// Whether the file is a database at all.
bool hasReadableSchema(DRDatabase& database)
{
    DRResultSet table = database.executeQuery(u"SELECT * FROM sqlite_master"_s);
    while (table.next()) {
    }
    return !table.hasFailed();
}

/// One for each event; they keep the calendars alive.
DREntryList entriesFor(const DRImportedCalendars& calendars)
{
    DREntryList entries;
    for (const DRImportedCalendar& calendar : *calendars) {
        for (const DRImportedEvent& event : calendar.calendarEvents) {
            entries.emplace_back(std::shared_ptr<const DRImportedEvent>(calendars, &event));
        }
    }
    return entries;
}

DRMigrateReport reportOn(const DRCalendarReading& reading)
{
    DRMigrateReport report{.found = reading.eventCount,
                           .counts = {{u"calendars"_s, static_cast<qint64>(reading.calendars.size())}}};
    if (!reading.isComplete) {
        report.skipped.push_back(
            {.what = u"Some events, or parts of them"_s, .why = u"the backup's calendar database is damaged"_s});
    }
    if (!reading.hasCalendars) {
        report.skipped.push_back(
            {.what = u"All events"_s, .why = u"the backup's calendar database has no list of calendars"_s});
    }
    if (reading.unreachedEventCount > 0) {
        report.skipped.push_back({.what = u"Events: %1"_s.arg(reading.unreachedEventCount),
                                  .why = u"they belong to no calendar of the iPhone"_s});
    }
    if (reading.olderCopyCount > 0) {
        report.warnings.append(
            u"Events left over from an older system, which are not moved: %1"_s.arg(reading.olderCopyCount));
    }
    if (reading.unownedAlarmCount > 0) {
        report.warnings.append(
            u"Alarms without a word of their events, which are not moved: %1"_s.arg(reading.unownedAlarmCount));
    }
    return report;
}

} // namespace

bool DRMigrateIPhoneCalendar::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    if (!DRIPhoneBackupFiles::holds(sourcePath(), kCalendarDatabase)) {
        setReport({.isNotInBackup = true});
        return false;
    }
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kCalendarDatabase, services().folders.temporary);
    if (!database || !hasReadableSchema(**database)) {
        return fail(u"the backup's calendar database cannot be opened"_s);
    }
    DRCalendarReading reading = readCalendars(**database);
    if (!reading.isComplete) {
        qCWarning(lcMigrate, "The calendar database of the backup cannot be read: %ls",
                  qUtf16Printable((*database)->lastErrorMessage()));
        if (reading.eventCount == 0) {
            return fail(u"the backup's calendar database cannot be read"_s);
        }
    }
    setReport(reportOn(reading));
    setAllCalendars(std::make_shared<std::vector<DRImportedCalendar>>(std::move(reading.calendars)));
    setEntries(entriesFor(allCalendars()));
    return true;
}

/// What an earlier load stored stays.
bool DRMigrateIPhoneCalendar::fail(const QString& why)
{
    qCWarning(lcMigrate, "No events: %ls", qUtf16Printable(why));
    setReport({.skipped = {{.what = u"All events"_s, .why = why}}});
    return false;
}
