#pragma once

#include "convert/calendar/DRImportedCalendar.h"

#include <vector>

class DRDatabase;

/// What an iPhone's calendar database holds.
struct DRCalendarReading {
    std::vector<DRImportedCalendar> calendars;
    qint64 eventCount = 0;          ///< in all of them
    qint64 unreachedEventCount = 0; ///< rows of events that belong to no calendar
    qint64 olderCopyCount = 0;      ///< rows of the older layout's table beside those of the newer one's
    qint64 unownedAlarmCount = 0;   ///< rows of alarms in a layout that does not tell their events
    bool hasCalendars = true;       ///< whether there is a table of calendars at all
    bool isComplete = true;         ///< false when a table could not be read to its end
};

/// The calendars in the order of their rows, with their events in the order of theirs. A calendar's events are its rows of
/// `CalendarItem`; one without any has its rows of `Event`, the older layout's table.
[[nodiscard]] DRCalendarReading readCalendars(DRDatabase& database);
