#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

/// The Gregorian calendar in one time zone, also for the centuries before it was introduced. Moments are milliseconds since
/// 1970-01-01 00:00:00 UTC. One object is used by one thread at a time.
///
/// It computes with moments up to 2^53 ms (285,000 years) from 1970.
class DRLocalCalendar {
public:
    enum class Unit { Day, Week, Month, Year };

    /// In the computer's own time zone: that of the variable `TZ`, else of /etc/localtime. A zone that is not known by name
    /// counts as one with its standard offset all year.
    [[nodiscard]] static DRLocalCalendar ofThisComputer();

    /// In the zone with this name of the time zone database, such as "Europe/Berlin". None when there is no such zone.
    [[nodiscard]] static std::optional<DRLocalCalendar> inTimeZone(const QString& id);

    /// The moment so many units later, or earlier, at the same time of day. A month that lacks the day gives its last one,
    /// a time that the clocks leave out is shifted by the length of the gap. None when it lies outside what is computed.
    [[nodiscard]] std::optional<qint64> adding(qint64 milliseconds, qint32 count, Unit unit) const;

    /// 1 to 31. A moment outside what is computed counts as the nearest inside.
    [[nodiscard]] int dayOfMonth(qint64 milliseconds) const;

    /// 0 for Sunday to 6 for Saturday. A moment outside what is computed counts as the nearest inside.
    [[nodiscard]] int dayOfWeek(qint64 milliseconds) const;

private:
    struct Closer {
        void operator()(void** calendar) const;
    };
    using Handle = std::unique_ptr<void*, Closer>; ///< `UCalendar*` of ICU

    /// A time between two changes of the clocks.
    struct Stretch {
        qint64 begin = 0;
        qint64 end = 0;    ///< the first moment that does not belong to it
        qint64 offset = 0; ///< milliseconds by which local time is ahead of UTC
    };

    explicit DRLocalCalendar(const QString& knownId);
    void collectStretches();
    [[nodiscard]] const Stretch* stretchAt(qint64 milliseconds) const;
    [[nodiscard]] std::optional<qint64> addingPlainly(qint64 milliseconds, qint32 count, Unit unit) const;
    [[nodiscard]] int field(int number, qint64 milliseconds) const;

    Handle m_calendar;
    std::vector<Stretch> m_stretches; ///< of the years that matter most, without gaps
};
