#include "platform/core/DRLocalCalendar.h"

#include "platform/core/DRLog.h"

#include <QDate>
#include <QFileInfo>

#include <unicode/ucal.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

/// ICU counts milliseconds in a double, which is exact up to here.
constexpr qint64 kFarthest = qint64{1} << 53;

constexpr double kDay = 86'400'000.0;

/// The years whose clock changes are known in advance: 1970 to 2150.
constexpr qint64 kFirstKnown = 0;
constexpr qint64 kKnownEnd = 5'680'281'600'000;

struct UnitOfICU {
    UCalendarDateFields field;
    double longestMilliseconds;
};
constexpr std::array kUnits{
    UnitOfICU{UCAL_DAY_OF_MONTH, kDay},
    UnitOfICU{UCAL_WEEK_OF_YEAR, 7 * kDay},
    UnitOfICU{UCAL_MONTH, 31 * kDay},
    UnitOfICU{UCAL_EXTENDED_YEAR, 366 * kDay},
};

/// The day so many units later; a month that lacks the day gives its last one.
QDate movedDate(QDate date, qint32 count, DRLocalCalendar::Unit unit)
{
    switch (unit) {
    case DRLocalCalendar::Unit::Day:
        return date.addDays(count);
    case DRLocalCalendar::Unit::Week:
        return date.addDays(qint64{7} * count);
    case DRLocalCalendar::Unit::Month:
        return date.addMonths(count);
    case DRLocalCalendar::Unit::Year:
        return date.addYears(count);
    }
    return {};
}

bool isComputable(double milliseconds)
{
    return std::abs(milliseconds) <= static_cast<double>(kFarthest);
}

using Name = std::array<UChar, 128>;

bool isKnown(const QString& id)
{
    Name canonical{};
    UErrorCode status = U_ZERO_ERROR;
    ucal_getCanonicalTimeZoneID(QStringView(id).utf16(), static_cast<int32_t>(id.size()), canonical.data(),
                                static_cast<int32_t>(canonical.size()), nullptr, &status);
    return U_SUCCESS(status) && id != QStringView(u"" UCAL_UNKNOWN_ZONE_ID);
}

/// A zone's name in TZ, which the C library also takes with a colon before it or as the path of its file.
QString nameInEnvironment()
{
    QString name = qEnvironmentVariable("TZ");
    if (name.startsWith(u':')) {
        name.remove(0, 1);
    }
    if (name.startsWith(u'/')) { // perhaps a link such as /etc/localtime
        name = QFileInfo(name).canonicalFilePath();
    }
    const QString folder = u"/usr/share/zoneinfo/"_s;
    return name.startsWith(folder) ? name.mid(folder.size()) : name;
}

QString nameOnHost()
{
    Name name{};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t size = ucal_getHostTimeZone(name.data(), static_cast<int32_t>(name.size()), &status);
    const bool fits = U_SUCCESS(status) && size > 0 && static_cast<std::size_t>(size) <= name.size();
    return fits ? QString::fromUtf16(name.data(), size) : QString();
}

/// A zone of ICU with the standard offset that the C library knows, such as "GMT+05:45".
QString fixedOffset()
{
    tzset();
    const long minutesEast = -timezone / 60;
    const std::div_t offset = std::div(static_cast<int>(std::abs(minutesEast)), 60);
    return u"GMT%1%2:%3"_s.arg(QChar(minutesEast < 0 ? u'-' : u'+'))
        .arg(offset.quot, 2, 10, QChar(u'0'))
        .arg(offset.rem, 2, 10, QChar(u'0'));
}

QString zoneOfThisComputer()
{
    QString wanted = qEnvironmentVariableIsEmpty("TZ") ? nameOnHost() : nameInEnvironment();
    if (isKnown(wanted)) {
        return wanted;
    }
    qCWarning(lcMigrate, "The computer's time zone is not known by name; its standard offset is used");
    return fixedOffset();
}

} // namespace

void DRLocalCalendar::Closer::operator()(void** calendar) const
{
    ucal_close(calendar);
}

DRLocalCalendar::DRLocalCalendar(const QString& knownId)
{
    UErrorCode status = U_ZERO_ERROR;
    m_calendar.reset(
        ucal_open(QStringView(knownId).utf16(), static_cast<int32_t>(knownId.size()), "", UCAL_GREGORIAN, &status));
    ucal_setGregorianChange(m_calendar.get(), -static_cast<double>(kFarthest) - 366 * kDay, &status);
    if (U_FAILURE(status)) {
        qFatal("ICU has no Gregorian calendar: %s", u_errorName(status));
    }
    collectStretches();
}

void DRLocalCalendar::collectStretches()
{
    UErrorCode status = U_ZERO_ERROR;
    for (qint64 begin = kFirstKnown; begin < kKnownEnd && U_SUCCESS(status);) {
        ucal_setMillis(m_calendar.get(), static_cast<double>(begin), &status);
        const int32_t offset = ucal_get(m_calendar.get(), UCAL_ZONE_OFFSET, &status) +
                               ucal_get(m_calendar.get(), UCAL_DST_OFFSET, &status);
        UDate change = 0.0;
        const bool hasChange =
            ucal_getTimeZoneTransitionDate(m_calendar.get(), UCAL_TZ_TRANSITION_NEXT, &change, &status) != 0;
        const qint64 end = hasChange && isComputable(change) ? static_cast<qint64>(change) : kKnownEnd;
        m_stretches.push_back({.begin = begin, .end = std::min(end, kKnownEnd), .offset = offset});
        begin = end;
    }
}

DRLocalCalendar DRLocalCalendar::ofThisComputer()
{
    return DRLocalCalendar(zoneOfThisComputer());
}

std::optional<DRLocalCalendar> DRLocalCalendar::inTimeZone(const QString& id)
{
    return isKnown(id) ? std::optional(DRLocalCalendar(id)) : std::nullopt;
}

std::optional<qint64> DRLocalCalendar::adding(qint64 milliseconds, qint32 count, Unit unit) const
{
    const UnitOfICU& step = kUnits.at(static_cast<std::size_t>(unit));
    const auto from = static_cast<double>(milliseconds);
    if (!isComputable(from) || !isComputable(from + count * step.longestMilliseconds)) {
        return std::nullopt;
    }
    if (const auto plain = addingPlainly(milliseconds, count, unit)) {
        return plain;
    }
    UErrorCode status = U_ZERO_ERROR;
    ucal_setMillis(m_calendar.get(), from, &status);
    ucal_add(m_calendar.get(), step.field, count, &status);
    const double sum = ucal_getMillis(m_calendar.get(), &status);
    return U_SUCCESS(status) && isComputable(sum) ? std::optional(static_cast<qint64>(sum)) : std::nullopt;
}

const DRLocalCalendar::Stretch* DRLocalCalendar::stretchAt(qint64 milliseconds) const
{
    const auto next = std::ranges::upper_bound(m_stretches, milliseconds, {}, &Stretch::begin);
    if (next == m_stretches.begin() || milliseconds >= std::prev(next)->end) {
        return nullptr;
    }
    return &*std::prev(next);
}

/// The same as ICU answers, at a tenth of its cost; none near a change of the clocks and outside the known years.
std::optional<qint64> DRLocalCalendar::addingPlainly(qint64 milliseconds, qint32 count, Unit unit) const
{
    constexpr qint64 kDayLength = 86'400'000;
    constexpr qint64 kJulianDayOf1970 = 2'440'588;
    const Stretch* from = stretchAt(milliseconds);
    if (from == nullptr) {
        return std::nullopt;
    }
    const qint64 local = milliseconds + from->offset;
    const qint64 timeOfDay = (local % kDayLength + kDayLength) % kDayLength;
    const QDate date = QDate::fromJulianDay((local - timeOfDay) / kDayLength + kJulianDayOf1970);
    const qint64 wanted = (movedDate(date, count, unit).toJulianDay() - kJulianDayOf1970) * kDayLength + timeOfDay;
    const Stretch* to = stretchAt(wanted - from->offset);
    const qint64 sum = to == nullptr ? 0 : wanted - to->offset;
    return to != nullptr && sum >= to->begin && sum < to->end ? std::optional(sum) : std::nullopt;
}

int DRLocalCalendar::dayOfMonth(qint64 milliseconds) const
{
    return field(UCAL_DAY_OF_MONTH, milliseconds);
}

int DRLocalCalendar::dayOfWeek(qint64 milliseconds) const
{
    return field(UCAL_DAY_OF_WEEK, milliseconds) - UCAL_SUNDAY;
}

int DRLocalCalendar::field(int number, qint64 milliseconds) const
{
    UErrorCode status = U_ZERO_ERROR;
    ucal_setMillis(m_calendar.get(), static_cast<double>(std::clamp(milliseconds, -kFarthest, kFarthest)), &status);
    return ucal_get(m_calendar.get(), static_cast<UCalendarDateFields>(number), &status);
}
