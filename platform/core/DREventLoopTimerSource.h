#pragma once

#include "platform/core/DRTimerSource.h"

/// Timers of the Qt event loop of the calling thread.
class DREventLoopTimerSource final : public DRTimerSource {
public:
    [[nodiscard]] std::unique_ptr<DRTimer> repeatEvery(std::chrono::milliseconds interval,
                                                       std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<DRTimer> runAfter(std::chrono::milliseconds delay,
                                                    std::function<void()> action) override;
};
