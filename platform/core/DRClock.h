#pragma once

#include <QDateTime>

/// The source of the current time. Passed in wherever time matters, so that tests can set it.
class DRClock {
public:
    virtual ~DRClock() = default;

    /// The current moment, in UTC, with millisecond resolution.
    [[nodiscard]] virtual QDateTime now() const = 0;
};

/// The computer's own clock.
class DRSystemClock final : public DRClock {
public:
    [[nodiscard]] QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};
