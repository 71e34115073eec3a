#include "convert/calendar/DRRecurrence.h"

#include "platform/core/DRLocalCalendar.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMillisecondsPerSecond = 1000;
constexpr std::size_t kMostFurtherInstances = 100;
constexpr qint64 kFarthestInstance = 3'158'915'760 * kMillisecondsPerSecond;

constexpr std::array kDays{"MO"_L1, "TU"_L1, "WE"_L1, "TH"_L1, "FR"_L1, "SA"_L1, "SU"_L1};
constexpr int kDaysPerWeek = kDays.size();

struct Frequency {
    qint32 code = 0; ///< the iPhone's
    QLatin1StringView word;
    DRLocalCalendar::Unit step = DRLocalCalendar::Unit::Year;
};
constexpr std::array kFrequencies{
    Frequency{1, "DAILY"_L1, DRLocalCalendar::Unit::Day},
    Frequency{2, "WEEKLY"_L1, DRLocalCalendar::Unit::Week},
    Frequency{3, "MONTHLY"_L1, DRLocalCalendar::Unit::Month},
};
constexpr Frequency kYearly{4, "YEARLY"_L1, DRLocalCalendar::Unit::Year};

Frequency frequencyOf(const DRImportedEvent& event)
{
    const auto* const known = std::ranges::find(kFrequencies, event.recurrenceFrequency, &Frequency::code);
    return known == kFrequencies.end() ? kYearly : *known;
}

bool hasWeekStart(const DRImportedEvent& event)
{
    return event.weekStart >= 1 && event.weekStart <= kDaysPerWeek;
}

QLatin1StringView dayAt(int index)
{
    return kDays.at(static_cast<std::size_t>(index));
}

QLatin1StringView weekStartOf(const DRImportedEvent& event)
{
    return hasWeekStart(event) ? dayAt(event.weekStart - 1) : "SU"_L1;
}

/// Kept: the week's start turns the names of the days, so that only with a start of 7 each day has its own.
QLatin1StringView weekDayOf(const DRImportedEvent& event, const DRLocalCalendar& calendar, qint64 start)
{
    const int turn = hasWeekStart(event) ? event.weekStart - 1 : 0;
    return dayAt((calendar.dayOfWeek(start) + turn) % kDaysPerWeek);
}

QString onWhichDay(const DRImportedEvent& event, const DRLocalCalendar& calendar)
{
    const qint64 start = DREventSpan::of(event).begin.value_or(0);
    switch (frequencyOf(event).step) {
    case DRLocalCalendar::Unit::Week:
        return u";BYDAY="_s + weekDayOf(event, calendar, start);
    case DRLocalCalendar::Unit::Month:
        return u";BYMONTHDAY=%1"_s.arg(calendar.dayOfMonth(start));
    case DRLocalCalendar::Unit::Day:
    case DRLocalCalendar::Unit::Year:
        break;
    }
    return {};
}

} // namespace

QString DRRecurrence::rule(const DRImportedEvent& event, const DRLocalCalendar& calendar)
{
    return u"FREQ=%1;INTERVAL=%2;WKST=%3%4"_s.arg(frequencyOf(event).word)
        .arg(event.recurrenceInterval)
        .arg(weekStartOf(event), onWhichDay(event, calendar));
}

qint64 DRRecurrence::durationSeconds(const DREventSpan& span)
{
    const qint64 duration = DRCalendarTime::difference(span.end.value_or(0), span.begin.value_or(0));
    return std::max(duration / kMillisecondsPerSecond, qint64{1});
}

std::vector<DRCalendarInstance> DRRecurrence::furtherInstances(const DRImportedEvent& event,
                                                               const DRLocalCalendar& calendar)
{
    std::vector<DRCalendarInstance> instances;
    const DREventSpan span = DREventSpan::of(event);
    if (!event.hasRecurrence || !span.begin) {
        return instances;
    }
    const DRLocalCalendar::Unit unit = frequencyOf(event).step;
    const qint64 duration = durationSeconds(span) * kMillisecondsPerSecond;
    qint64 last = DRCalendarTime::sum(*span.begin, kFarthestInstance);
    if (event.recurrenceEndDate.isValid()) {
        last = std::min(last, event.recurrenceEndDate.toMSecsSinceEpoch());
    }
    instances.reserve(kMostFurtherInstances);
    auto moment = calendar.adding(*span.begin, event.recurrenceInterval, unit);
    while (moment && *moment <= last && instances.size() < kMostFurtherInstances) {
        instances.push_back(
            DRCalendarInstance::further(*moment, DRCalendarTime::sum(*moment, duration), event.isAllDay));
        moment = calendar.adding(*moment, event.recurrenceInterval, unit);
    }
    return instances;
}
