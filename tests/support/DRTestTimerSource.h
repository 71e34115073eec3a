#pragma once

#include "platform/core/DRTimerSource.h"

#include <list>
#include <utility>

/// Timers whose time passes only when a test says so.
class DRTestTimerSource final : public DRTimerSource {
public:
    [[nodiscard]] std::unique_ptr<DRTimer> repeatEvery(std::chrono::milliseconds interval,
                                                       std::function<void()> action) override
    {
        return add(interval, std::move(action), true);
    }

    [[nodiscard]] std::unique_ptr<DRTimer> runAfter(std::chrono::milliseconds delay,
                                                    std::function<void()> action) override
    {
        return add(delay, std::move(action), false);
    }

    /// Lets the time pass, firing what falls due in order.
    void advance(std::chrono::milliseconds time)
    {
        const auto end = m_now + time;
        while (const auto due = nextDue(end)) {
            m_now = due->fireAt;
            due->isRunning = due->repeats;
            due->fireAt += due->interval;
            due->action();
        }
        m_now = end;
    }

    [[nodiscard]] std::size_t runningCount() const
    {
        std::size_t count = 0;
        for (const auto& entry : m_entries) {
            const auto timer = entry.lock();
            count += timer && timer->isRunning ? 1U : 0U;
        }
        return count;
    }

private:
    struct Entry {
        std::chrono::milliseconds interval;
        std::chrono::milliseconds fireAt;
        std::function<void()> action;
        bool repeats = false;
        bool isRunning = true;
    };

    struct Timer final : DRTimer {
        explicit Timer(std::shared_ptr<Entry> timerEntry) : entry(std::move(timerEntry)) {}
        ~Timer() override { entry->isRunning = false; }
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;
        std::shared_ptr<Entry> entry;
    };

    std::unique_ptr<DRTimer> add(std::chrono::milliseconds interval, std::function<void()> action, bool repeats)
    {
        auto entry = std::make_shared<Entry>(Entry{interval, m_now + interval, std::move(action), repeats});
        m_entries.push_back(entry);
        return std::make_unique<Timer>(std::move(entry));
    }

    std::shared_ptr<Entry> nextDue(std::chrono::milliseconds end) const
    {
        std::shared_ptr<Entry> next;
        for (const auto& weak : m_entries) {
            const auto entry = weak.lock();
            if (entry && entry->isRunning && entry->fireAt <= end && (!next || entry->fireAt < next->fireAt)) {
                next = entry;
            }
        }
        return next;
    }

    std::chrono::milliseconds m_now{0};
    std::list<std::weak_ptr<Entry>> m_entries;
};
