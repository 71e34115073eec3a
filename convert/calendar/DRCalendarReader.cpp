#include "convert/calendar/DRCalendarReader.h"

#include "convert/calendar/DRCalendarTable.h"
#include "convert/calendar/DREventDetails.h"
#include "platform/core/DRDates.h"

#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The rows of one table of events.
struct Events {
    QHash<qint64, std::vector<DRImportedEvent>> byCalendar;
    qint64 unreachedCount = 0; ///< rows that no calendar has taken
    bool isComplete = true;
};

DRImportedEvent eventFromRow(const DRResultSet& row, const DREventDetails& details)
{
    const double start = row.real("start_date");
    DRImportedEvent event{
        .summary = row.string("summary"),
        .description = row.string("description"),
        .startDate = DRDates::fromReferenceSeconds(start),
        .timeZone = row.string("start_tz"),
        .isAllDay = row.integer("all_day") != 0 || row.integer("due_all_day") != 0,
        .url = row.string("url"),
    };
    if (!event.isAllDay) {
        event.endDate = DRDates::fromReferenceSeconds(row.real("end_date"));
    }
    details.addTo(event, row.integer("ROWID"), start);
    return event;
}

Events readEvents(DRDatabase& database, const char* table, const DREventDetails& details)
{
    Events events{.unreachedCount = DRCalendarTable::rowCount(database, table)};
    if (!DRCalendarTable::hasColumn(database, table, "calendar_id")) {
        return events;
    }
    DRResultSet row = DRCalendarTable::rowsWithKey(database, table, "calendar_id");
    while (row.next()) {
        events.byCalendar[row.integer("calendar_id")].push_back(eventFromRow(row, details));
    }
    events.isComplete = !row.hasFailed();
    return events;
}

/// Takes the calendar's rows out of the table.
std::vector<DRImportedEvent> takeEvents(Events& events, qint64 calendarId)
{
    std::vector<DRImportedEvent> taken = events.byCalendar.take(calendarId);
    events.unreachedCount -= static_cast<qint64>(taken.size());
    return taken;
}

} // namespace

DRCalendarReading readCalendars(DRDatabase& database)
{
    const DREventDetails details = DREventDetails::read(database);
    Events items = readEvents(database, "CalendarItem", details);
    Events older = readEvents(database, "Event", details);
    DRCalendarReading reading{.unownedAlarmCount = details.unownedAlarmCount()};
    DRResultSet row = database.executeQuery(u"SELECT * FROM Calendar"_s);
    while (row.next()) {
        const qint64 id = row.integer("ROWID");
        std::vector<DRImportedEvent> events = takeEvents(items, id);
        std::vector<DRImportedEvent> olderEvents = takeEvents(older, id);
        if (events.empty()) {
            events = std::move(olderEvents);
        } else {
            reading.olderCopyCount += static_cast<qint64>(olderEvents.size());
        }
        reading.eventCount += static_cast<qint64>(events.size());
        reading.calendars.push_back({.name = row.string("title"), .calendarEvents = std::move(events)});
    }
    reading.hasCalendars = database.hasTable(u"Calendar"_s);
    reading.isComplete =
        (!row.hasFailed() || !reading.hasCalendars) && details.isComplete() && items.isComplete && older.isComplete;
    reading.unreachedEventCount = items.unreachedCount + older.unreachedCount;
    return reading;
}
