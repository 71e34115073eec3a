#pragma once

#include "platform/core/DRTaskQueue.h"

#include <deque>
#include <utility>

/// Runs nothing until asked, then everything in line: background tasks in the order of submission, each followed by
/// what it put on the main queue.
class DRTestTaskQueue final : public DRTaskQueue {
public:
    void runInBackground(std::function<void()> task) override { m_background.push_back(std::move(task)); }
    void runOnMainThread(std::function<void()> task) override { m_main.push_back(std::move(task)); }

    /// Runs until both queues are empty.
    void runAll()
    {
        while (runMain() || runOneInBackground()) {
        }
    }

    /// Runs what waits on the main queue. False when nothing did.
    bool runMain()
    {
        bool hasRun = false;
        while (!m_main.empty()) {
            take(m_main)();
            hasRun = true;
        }
        return hasRun;
    }

    /// Runs the oldest background task alone. False when there is none.
    bool runOneInBackground()
    {
        if (m_background.empty()) {
            return false;
        }
        take(m_background)();
        return true;
    }

    [[nodiscard]] bool isEmpty() const { return m_background.empty() && m_main.empty(); }

private:
    static std::function<void()> take(std::deque<std::function<void()>>& queue)
    {
        std::function<void()> task = std::move(queue.front());
        queue.pop_front();
        return task;
    }

    std::deque<std::function<void()>> m_background;
    std::deque<std::function<void()>> m_main;
};
