#include "convert/calendar/DRCalendarInstance.h"

#include "platform/core/DRDates.h"

#include <limits>

namespace {

constexpr qint64 kMillisecondsPerSecond = 1000;
constexpr qint64 kSecondsPerMinute = 60;
constexpr qint64 kSecondsPerDay = 86400;

/// 1970-01-01 as a Julian day, and a little more so that midnight does not fall short of its day.
constexpr double kJulianDayOf1970 = 2440588.001;

constexpr qint64 kEarliest = std::numeric_limits<qint64>::min();
constexpr qint64 kLatest = std::numeric_limits<qint64>::max();

} // namespace

qint64 DRCalendarTime::sum(qint64 a, qint64 b)
{
    qint64 result = 0;
    if (__builtin_add_overflow(a, b, &result)) {
        return b < 0 ? kEarliest : kLatest;
    }
    return result;
}

qint64 DRCalendarTime::difference(qint64 a, qint64 b)
{
    qint64 result = 0;
    if (__builtin_sub_overflow(a, b, &result)) {
        return b < 0 ? kLatest : kEarliest;
    }
    return result;
}

qint64 DRCalendarTime::julianDay(double seconds)
{
    return DRDates::saturatingInteger(seconds / static_cast<double>(kSecondsPerDay) + kJulianDayOf1970);
}

qint64 DRCalendarTime::minuteOfDay(qint64 milliseconds)
{
    qint64 second = milliseconds / kMillisecondsPerSecond % kSecondsPerDay;
    if (milliseconds < 1 - kMillisecondsPerSecond) {
        second = (second + kSecondsPerDay) % kSecondsPerDay;
    }
    return second / kSecondsPerMinute;
}

DREventSpan DREventSpan::of(const DRImportedEvent& event)
{
    DREventSpan span;
    if (event.startDate.isValid()) {
        span.begin = event.startDate.toMSecsSinceEpoch();
    }
    span.end = span.begin;
    if (event.endDate.isValid() && !(event.endDate < event.startDate)) {
        span.end = event.endDate.toMSecsSinceEpoch();
    }
    return span;
}

DRCalendarInstance DRCalendarInstance::first(const DREventSpan& span, bool isAllDay)
{
    const qint64 begin = span.begin.value_or(0);
    const qint64 end = span.end.value_or(0);
    const qint64 beginSecond = begin / kMillisecondsPerSecond;
    const qint64 endSecond = end / kMillisecondsPerSecond;
    const qint64 startDay = DRCalendarTime::julianDay(static_cast<double>(beginSecond));
    return {
        .begin = span.begin,
        .end = span.end,
        .startDay = startDay,
        .endDay = isAllDay ? startDay : DRCalendarTime::julianDay(static_cast<double>(endSecond)),
        .startMinute = DRCalendarTime::minuteOfDay(begin),
        .endMinute = DRCalendarTime::minuteOfDay(end),
    };
}

DRCalendarInstance DRCalendarInstance::further(qint64 begin, qint64 end, bool isAllDay)
{
    constexpr auto kPerSecond = static_cast<double>(kMillisecondsPerSecond);
    const qint64 startDay = DRCalendarTime::julianDay(static_cast<double>(begin) / kPerSecond);
    return {
        .begin = begin,
        .end = end,
        .startDay = startDay,
        .endDay = isAllDay ? startDay : DRCalendarTime::julianDay(static_cast<double>(end) / kPerSecond),
        .startMinute = DRCalendarTime::minuteOfDay(begin),
        .endMinute = DRCalendarTime::minuteOfDay(end),
    };
}
