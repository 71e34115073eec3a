#include "platform/core/DRLocalCalendar.h"

#include <QDate>

#include <algorithm>
#include <array>
#include <ctime>

namespace {

constexpr qint64 kMillisecondsPerSecond = 1000;
constexpr qint64 kMillisecondsPerDay = 86'400'000;
constexpr qint64 kJulianDayOf1970 = 2'440'588;

constexpr qint64 kFarthest = qint64{1} << 53;

/// The years whose clock changes are looked up once and for all: 1900 to 2150.
constexpr qint64 kFirstKnown = -2'208'988'800'000;
constexpr qint64 kKnownEnd = 5'680'281'600'000;

bool isComputable(qint64 milliseconds)
{
    return milliseconds >= -kFarthest && milliseconds <= kFarthest;
}

qint64 clamped(qint64 milliseconds)
{
    return std::clamp(milliseconds, -kFarthest, kFarthest);
}

/// The whole days since 1970 that lie before the moment; negative before 1970.
qint64 daysBefore(qint64 milliseconds)
{
    const qint64 timeOfDay = (milliseconds % kMillisecondsPerDay + kMillisecondsPerDay) % kMillisecondsPerDay;
    return (milliseconds - timeOfDay) / kMillisecondsPerDay;
}

/// What the C library says: the milliseconds by which local time is ahead of UTC.
qint64 lookUpOffset(qint64 milliseconds)
{
    // Whole seconds, cut toward the past. The C library reads the zone only once, unlike with mktime.
    const qint64 cut = milliseconds < 0 ? kMillisecondsPerSecond - 1 : 0;
    const auto seconds = static_cast<std::time_t>((milliseconds - cut) / kMillisecondsPerSecond);
    std::tm local{};
    return ::localtime_r(&seconds, &local) == nullptr ? 0 : qint64{local.tm_gmtoff} * kMillisecondsPerSecond;
}

/// The first second after `before` at which the offset is another than there; there is just one change up to `after`.
qint64 changeBetween(qint64 before, qint64 after)
{
    const qint64 offset = lookUpOffset(before);
    while (after - before > kMillisecondsPerSecond) {
        const qint64 middle = before + (after - before) / (2 * kMillisecondsPerSecond) * kMillisecondsPerSecond;
        (lookUpOffset(middle) == offset ? before : after) = middle;
    }
    return after;
}

constexpr qint64 kFarthestDay = kFarthest / kMillisecondsPerDay;

/// The most days that a unit has.
constexpr std::array<qint64, 4> kDaysOfUnit{1, 7, 31, 366};

/// The day so many units later; a month that lacks the day gives its last one.
QDate movedDate(QDate date, qint32 count, DRLocalCalendar::Unit unit)
{
    switch (unit) {
    case DRLocalCalendar::Unit::Day:
        return date.addDays(count);
    case DRLocalCalendar::Unit::Week:
        return date.addDays(kDaysOfUnit[1] * count);
    case DRLocalCalendar::Unit::Month:
        return date.addMonths(count);
    case DRLocalCalendar::Unit::Year:
        return date.addYears(count);
    }
    return {};
}

} // namespace

DRLocalCalendar::DRLocalCalendar()
{
    ::tzset();
    m_stretches.push_back({.begin = kFirstKnown, .offset = lookUpOffset(kFirstKnown)});
    // Clocks are not changed twice in a day.
    for (qint64 day = kFirstKnown; day < kKnownEnd; day += kMillisecondsPerDay) {
        const qint64 nextDay = day + kMillisecondsPerDay;
        if (const qint64 offset = lookUpOffset(nextDay); offset != m_stretches.back().offset) {
            m_stretches.push_back({.begin = changeBetween(day, nextDay), .offset = offset});
        }
    }
}

std::optional<qint64> DRLocalCalendar::adding(qint64 milliseconds, qint32 count, Unit unit) const
{
    if (!isComputable(milliseconds) ||
        qAbs(kDaysOfUnit.at(static_cast<std::size_t>(unit)) * count) > 2 * kFarthestDay) {
        return std::nullopt;
    }
    const qint64 offset = offsetAt(milliseconds);
    const qint64 local = milliseconds + offset;
    const qint64 day = daysBefore(local);
    const QDate date = movedDate(QDate::fromJulianDay(day + kJulianDayOf1970), count, unit);
    const qint64 daysFrom1970 = date.toJulianDay() - kJulianDayOf1970;
    if (qAbs(daysFrom1970) > kFarthestDay) {
        return std::nullopt;
    }
    return momentAt(daysFrom1970 * kMillisecondsPerDay + (local - day * kMillisecondsPerDay), offset);
}

/// Of a time that the clocks show twice, either moment.
qint64 DRLocalCalendar::momentAt(qint64 localMilliseconds, qint64 likelyOffset) const
{
    const qint64 first = offsetAt(localMilliseconds - likelyOffset);
    const qint64 second = offsetAt(localMilliseconds - first);
    if (first == second || offsetAt(localMilliseconds - second) == second) {
        return localMilliseconds - second;
    }
    return localMilliseconds - std::min(first, second); // in a gap: what was valid before it leads behind it
}

qint64 DRLocalCalendar::offsetAt(qint64 milliseconds) const
{
    if (milliseconds < kFirstKnown || milliseconds >= kKnownEnd) {
        return lookUpOffset(milliseconds);
    }
    const auto next = std::ranges::upper_bound(m_stretches, milliseconds, {}, &Stretch::begin);
    return std::prev(next)->offset;
}

QDate DRLocalCalendar::dateAt(qint64 milliseconds) const
{
    const qint64 moment = clamped(milliseconds);
    return QDate::fromJulianDay(daysBefore(moment + offsetAt(moment)) + kJulianDayOf1970);
}

int DRLocalCalendar::dayOfMonth(qint64 milliseconds) const
{
    return dateAt(milliseconds).day();
}

int DRLocalCalendar::dayOfWeek(qint64 milliseconds) const
{
    return dateAt(milliseconds).dayOfWeek() % 7; // Sunday is 7
}
