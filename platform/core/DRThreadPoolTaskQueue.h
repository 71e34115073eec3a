#pragma once

#include "platform/core/DRTaskQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include <QEvent>
#include <QObject>

/// The program's task queue: threads of its own, made when they are needed, and the event loop of the thread that made
/// this object. Make it on the main thread; its destruction ends it.
///
/// Tasks are handed over under a lock of the standard library, not of Qt's: so the thread sanitizer sees the hand-over
/// and reports real races only.
class DRThreadPoolTaskQueue final : public DRTaskQueue {
public:
    DRThreadPoolTaskQueue();
    ~DRThreadPoolTaskQueue() override;
    DRThreadPoolTaskQueue(const DRThreadPoolTaskQueue&) = delete;
    DRThreadPoolTaskQueue& operator=(const DRThreadPoolTaskQueue&) = delete;

    /// Waits for background tasks that already run and drops those still waiting; later ones are dropped, too. Main
    /// thread.
    void end();

    void runInBackground(std::function<void()> task) override;
    void runOnMainThread(std::function<void()> task) override;

private:
    /// Lives in the main thread. Events posted to it run there, in order; it does not look at them, because they were made
    /// in another thread, under a lock of Qt's.
    class MainThreadAnchor final : public QObject {
    public:
        explicit MainThreadAnchor(DRThreadPoolTaskQueue& queue) : m_queue(queue) {}

    protected:
        void customEvent(QEvent* /*event*/) override { m_queue.runNextMainTask(); }

    private:
        DRThreadPoolTaskQueue& m_queue;
    };

    void workInBackground();
    void runNextMainTask();

    const std::size_t m_maximumThreads;
    std::mutex m_mutex; ///< guards everything below but the anchor
    std::condition_variable m_hasWork;
    std::deque<std::function<void()>> m_backgroundTasks;
    std::deque<std::function<void()>> m_mainTasks;
    std::size_t m_idleThreads = 0;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;

    MainThreadAnchor m_mainThreadAnchor{*this};
};
