#pragma once

#include <QtGlobal>

#include <optional>
#include <vector>

class QDate;

/// The Gregorian calendar in the computer's own time zone, also for the centuries before it was introduced. Moments are
/// milliseconds since 1970-01-01 00:00:00 UTC; what is computed with are those up to 2^53 ms (285,000 years) from there.
///
/// The zone is the one that the C library takes when the object is made: a name, file or rule in the variable `TZ`, else
/// /etc/localtime. So the computer's own list of clock changes counts, not that of another library.
class DRLocalCalendar {
public:
    enum class Unit { Day, Week, Month, Year };

    DRLocalCalendar();

    /// The moment so many units later, or earlier, at the same time of day. A month that lacks the day gives its last one,
    /// a time that the clocks leave out is shifted by the length of the gap. None when it lies outside what is computed.
    [[nodiscard]] std::optional<qint64> adding(qint64 milliseconds, qint32 count, Unit unit) const;

    /// 1 to 31. A moment outside what is computed counts as the nearest inside.
    [[nodiscard]] int dayOfMonth(qint64 milliseconds) const;

    /// 0 for Sunday to 6 for Saturday. A moment outside what is computed counts as the nearest inside.
    [[nodiscard]] int dayOfWeek(qint64 milliseconds) const;

private:
    /// A time between two changes of the clocks.
    struct Stretch {
        qint64 begin = 0;
        qint64 offset = 0; ///< milliseconds by which local time is ahead of UTC
    };

    [[nodiscard]] qint64 offsetAt(qint64 milliseconds) const;
    [[nodiscard]] qint64 momentAt(qint64 localMilliseconds, qint64 likelyOffset) const;
    [[nodiscard]] QDate dateAt(qint64 milliseconds) const;

    std::vector<Stretch> m_stretches; ///< of the years that matter most, one after the other
};
