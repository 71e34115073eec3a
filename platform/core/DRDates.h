#pragma once

#include <QDateTime>
#include <QtGlobal>

/// Conversions between the clocks of the two phones. Floating-point seconds are real input: infinities, NaN and values
/// out of range saturate, they never overflow. NaN counts as 0. Dates keep whole milliseconds; what lies below is cut
/// off, toward 1970.
namespace DRDates {

/// Unix time of 2001-01-01 00:00:00 UTC, from which iPhone databases count.
inline constexpr qint64 kReferenceDateUnixSeconds = 978307200;

/// The moment that lies this many seconds after 2001-01-01 00:00:00 UTC.
[[nodiscard]] QDateTime fromReferenceSeconds(double seconds);

/// The moment that lies this many seconds after 1970-01-01 00:00:00 UTC.
[[nodiscard]] QDateTime fromUnixSeconds(double seconds);

/// Seconds since 2001-01-01 00:00:00 UTC; 0 for an invalid date.
[[nodiscard]] double toReferenceSeconds(const QDateTime& date);

/// Milliseconds since 1970 of a count of seconds since 1970: multiplied by 1000.0, truncated toward zero, saturated.
[[nodiscard]] qint64 unixMilliseconds(double unixSeconds);

/// The double truncated toward zero to a 64-bit integer, saturated at both ends; NaN gives 0.
[[nodiscard]] qint64 saturatingInteger(double value);

/// The date as RFC 3339 text in UTC with seconds, such as "2014-03-09T18:30:00Z"; null for an invalid date
/// and for years that the format cannot write.
[[nodiscard]] QString rfc3339(const QDateTime& date);

} // namespace DRDates
