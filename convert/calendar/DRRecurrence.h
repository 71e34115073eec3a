#pragma once

#include "convert/calendar/DRCalendarInstance.h"

#include <QString>

#include <vector>

class DRLocalCalendar;

/// How the phone's calendar writes that an event recurs. Functions from values to values.
namespace DRRecurrence {

/// The rule, such as "FREQ=WEEKLY;INTERVAL=1;WKST=SU;BYDAY=TU". The day of the week or month is that of the event's start
/// in the calendar's zone.
[[nodiscard]] QString rule(const DRImportedEvent& event, const DRLocalCalendar& calendar);

/// How long each instance takes, in whole seconds; 1 for anything shorter.
[[nodiscard]] qint64 durationSeconds(const DREventSpan& span);

/// The instances after the event's own: each one step after the one before it, at most 100, none after the end of the
/// recurrence or more than 3158915760 s after the start. A step of 0 gives the same instance 100 times. None for an event
/// that does not recur or has no start.
[[nodiscard]] std::vector<DRCalendarInstance> furtherInstances(const DRImportedEvent& event,
                                                               const DRLocalCalendar& calendar);

} // namespace DRRecurrence
