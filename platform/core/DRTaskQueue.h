#pragma once

#include <functional>

/// Where work runs: the process-wide concurrent background queue and the main thread's queue.
/// Tasks of the main queue run one after the other, in the order in which they were submitted.
class DRTaskQueue {
public:
    virtual ~DRTaskQueue() = default;

    /// Submits a task to the background queue and returns at once. Tasks run concurrently, in no promised order. Any
    /// thread.
    virtual void runInBackground(std::function<void()> task) = 0;

    /// Submits a task to the main thread and returns at once, also when called on the main thread. Any thread.
    virtual void runOnMainThread(std::function<void()> task) = 0;
};
