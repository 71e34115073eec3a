#include "convert/calendar/DRMigrateAndroidCalendar.h"

#include "convert/calendar/DRCalendarWriter.h"
#include "convert/calendar/DRMigrateIPhoneCalendar.h"
#include "platform/core/DRLocalCalendar.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRNeededColumns.h"
#include "platform/sqlite/DRTransaction.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Of `Calendars` only the number: a calendar that cannot be made is replaced by number 1.
const std::array kNeeded{
    DRNeededColumns{"Calendars", {"_id"}},
    DRNeededColumns{"Events",
                    {"dirty", "calendar_id", "title", "eventLocation", "description", "dtstart", "dtend", "duration",
                     "eventTimezone", "selfAttendeeStatus", "allDay", "hasAlarm", "rrule", "lastDate",
                     "hasAttendeeData", "organizer"}},
    DRNeededColumns{
        "Attendees",
        {"event_id", "attendeeName", "attendeeEmail", "attendeeStatus", "attendeeRelationship", "attendeeType"}},
    DRNeededColumns{"Instances", {"event_id", "begin", "end", "startDay", "endDay", "startMinute", "endMinute"}},
    DRNeededColumns{"Reminders", {"event_id", "minutes", "method"}},
};

} // namespace

DRMigrateAndroidCalendar::Names DRMigrateAndroidCalendar::names() const
{
    return {.app = u"The calendar app"_s, .records = u"events"_s};
}

bool DRMigrateAndroidCalendar::mergeDataFrom(const DRMigrateDataType& source)
{
    const auto* calendars = dynamic_cast<const DRMigrateIPhoneCalendar*>(&source);
    if (calendars == nullptr) {
        return false;
    }
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(source.entries()->size());
    bool isMerged = ignoreDataType();
    if (!isMerged) {
        auto database = DRDatabase::open(pathInApp(u"db/calendar.db"_s), DRDatabase::Profile::Phone);
        if (!database) {
            skipAll(outcome, u"the phone's calendar database cannot be opened"_s);
        }
        isMerged = database && mergeCalendars(*database, *calendars, outcome);
    }
    setReport(std::move(outcome));
    return isMerged;
}

bool DRMigrateAndroidCalendar::mergeCalendars(DRDatabase& database,
                                              const DRMigrateIPhoneCalendar& source,
                                              DRMigrateReport& outcome)
{
    if (const QString lack = DRNeededColumns::firstLackIn(database, kNeeded); !lack.isNull()) {
        leaveAsItIs(outcome, u"the calendar database of this phone has no "_s + lack);
        return true;
    }
    DRTransaction transaction(database);
    const QString loss = transaction.isOpen() ? writeCalendars(database, source, outcome) : database.lastErrorMessage();
    if (loss.isNull() && outcome.written == 0 && outcome.found > 0) {
        setIgnoreDataType(true); // each is named; without a commit nothing has changed
        return true;
    }
    if (loss.isNull() && transaction.commit()) {
        outcome.counts[u"calendars"_s] = static_cast<qint64>(source.allCalendars()->size()); // all in the phone's one
        return true;
    }
    outcome.written = 0;
    skipAll(outcome, loss.isNull() ? database.lastErrorMessage() : loss);
    return false;
}

/// Why the transaction was lost; null when it stands.
QString DRMigrateAndroidCalendar::writeCalendars(DRDatabase& database,
                                                 const DRMigrateIPhoneCalendar& source,
                                                 DRMigrateReport& outcome)
{
    const DRLocalCalendar calendar;
    DRCalendarWriter writer(database, calendar);
    const auto calendarId = writer.defaultCalendarId();
    if (!calendarId || writer.isLost()) {
        return writer.reason();
    }
    for (const DRImportedCalendar& imported : *source.allCalendars()) {
        writer.insertCalendarWithEventsIntoAndroidDatabase(imported, *calendarId);
    }
    if (writer.isLost()) {
        return writer.reason();
    }
    writer.losses().tell(outcome);
    outcome.written = writer.eventCount();
    return {};
}
