#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// A running timer. Destroying it stops it; its action is not called afterwards.
class DRTimer {
public:
    virtual ~DRTimer() = default;
};

/// Makes timers that fire on the main thread. Passed in, so that tests decide when time passes.
class DRTimerSource {
public:
    virtual ~DRTimerSource() = default;

    /// Calls `action` again and again, first after one interval, until the timer is destroyed.
    [[nodiscard]] virtual std::unique_ptr<DRTimer> repeatEvery(std::chrono::milliseconds interval,
                                                               std::function<void()> action) = 0;

    /// Calls `action` once, after the delay, unless the timer is destroyed before.
    [[nodiscard]] virtual std::unique_ptr<DRTimer> runAfter(std::chrono::milliseconds delay,
                                                            std::function<void()> action) = 0;
};
