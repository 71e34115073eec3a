#pragma once

#include "platform/core/DRTaskQueue.h"

#include <QObject>
#include <QThreadPool>

/// The program's task queue: a pool of threads, and the event loop of the thread that made this object.
/// Make it on the main thread; its destruction waits for tasks that already run and drops those still waiting.
class DRThreadPoolTaskQueue final : public DRTaskQueue {
public:
    DRThreadPoolTaskQueue();
    ~DRThreadPoolTaskQueue() override;
    DRThreadPoolTaskQueue(const DRThreadPoolTaskQueue&) = delete;
    DRThreadPoolTaskQueue& operator=(const DRThreadPoolTaskQueue&) = delete;

    void runInBackground(std::function<void()> task) override;
    void runOnMainThread(std::function<void()> task) override;

private:
    QObject m_mainThreadAnchor; ///< lives in the main thread; events posted to it run there, in order
    QThreadPool m_pool;
};
