#pragma once

#include "convert/calendar/DRImportedEvent.h"

#include <QtGlobal>

#include <optional>

/// Arithmetic on milliseconds that stops at the ends of the range: dates of a damaged database may lie there.
namespace DRCalendarTime {

/// a + b.
[[nodiscard]] qint64 sum(qint64 a, qint64 b);

/// a - b.
[[nodiscard]] qint64 difference(qint64 a, qint64 b);

/// The Julian day number of the phone's calendar for seconds since 1970: the day that began at midnight UTC.
[[nodiscard]] qint64 julianDay(double seconds);

/// The minute of the day in UTC, 0 to 1439. The last 999 ms before 1970 count as minute 0.
[[nodiscard]] qint64 minuteOfDay(qint64 milliseconds);

} // namespace DRCalendarTime

/// When an event begins and ends, in milliseconds since 1970; none when it has no date.
struct DREventSpan {
    std::optional<qint64> begin;
    std::optional<qint64> end; ///< the begin when the event has no end or one before its begin

    [[nodiscard]] static DREventSpan of(const DRImportedEvent& event);
};

/// One time that an event takes place, as the phone's table `Instances` has it.
struct DRCalendarInstance {
    std::optional<qint64> begin; ///< milliseconds since 1970
    std::optional<qint64> end;
    qint64 startDay = 0; ///< Julian day numbers, in UTC
    qint64 endDay = 0;
    qint64 startMinute = 0; ///< of the day, in UTC
    qint64 endMinute = 0;

    bool operator==(const DRCalendarInstance&) const = default;

    /// The event's own time.
    [[nodiscard]] static DRCalendarInstance first(const DREventSpan& span, bool isAllDay);

    /// A repetition. Its days come from its times with their milliseconds, those of the first from whole seconds.
    [[nodiscard]] static DRCalendarInstance further(qint64 begin, qint64 end, bool isAllDay);
};
