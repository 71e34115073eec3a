#include "platform/core/DRDates.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kMillisecondsPerSecond = 1000.0;
constexpr double kTwoToThe63 = 9223372036854775808.0;

QDateTime fromMilliseconds(double milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(DRDates::saturatingInteger(milliseconds), Qt::UTC);
}

} // namespace

QDateTime DRDates::fromReferenceSeconds(double seconds)
{
    const double finite = std::isnan(seconds) ? 0.0 : seconds;
    return fromMilliseconds((finite + static_cast<double>(kReferenceDateUnixSeconds)) * kMillisecondsPerSecond);
}

QDateTime DRDates::fromUnixSeconds(double seconds)
{
    return fromMilliseconds(seconds * kMillisecondsPerSecond);
}

double DRDates::toReferenceSeconds(const QDateTime& date)
{
    if (!date.isValid()) {
        return 0.0;
    }
    constexpr qint64 kReferenceMilliseconds = kReferenceDateUnixSeconds * 1000;
    constexpr qint64 kEarliest = std::numeric_limits<qint64>::min() + kReferenceMilliseconds;
    const qint64 milliseconds = std::max(date.toMSecsSinceEpoch(), kEarliest) - kReferenceMilliseconds;
    return static_cast<double>(milliseconds) / kMillisecondsPerSecond;
}

qint64 DRDates::unixMilliseconds(double unixSeconds)
{
    return saturatingInteger(unixSeconds * kMillisecondsPerSecond);
}

qint64 DRDates::saturatingInteger(double value)
{
    if (std::isnan(value)) {
        return 0;
    }
    if (value >= kTwoToThe63) {
        return std::numeric_limits<qint64>::max();
    }
    if (value < -kTwoToThe63) {
        return std::numeric_limits<qint64>::min();
    }
    return static_cast<qint64>(value);
}

QString DRDates::rfc3339(const QDateTime& date)
{
    return date.isValid() ? date.toUTC().toString(Qt::ISODate) : QString();
}
