#include "platform/core/DRThreadPoolTaskQueue.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace {

/// Tasks wait for disks more than they compute, so a small computer still gets this many.
constexpr std::size_t kMinimumThreads = 4;

std::function<void()> takeFirst(std::deque<std::function<void()>>& tasks)
{
    std::function<void()> task = std::move(tasks.front());
    tasks.pop_front();
    return task;
}

} // namespace

DRThreadPoolTaskQueue::DRThreadPoolTaskQueue()
    : m_maximumThreads(std::max<std::size_t>(kMinimumThreads, std::thread::hardware_concurrency()))
{
}

DRThreadPoolTaskQueue::~DRThreadPoolTaskQueue()
{
    end();
}

void DRThreadPoolTaskQueue::end()
{
    std::deque<std::function<void()>> dropped;
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
        dropped.swap(m_backgroundTasks);
    }
    m_hasWork.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

void DRThreadPoolTaskQueue::runInBackground(std::function<void()> task)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (m_isEnding) {
            return;
        }
        m_backgroundTasks.push_back(std::move(task));
        if (m_backgroundTasks.size() > m_idleThreads && m_threads.size() < m_maximumThreads) {
            m_threads.emplace_back([this] { workInBackground(); });
        }
    }
    m_hasWork.notify_one();
}

void DRThreadPoolTaskQueue::workInBackground()
{
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(m_mutex);
            ++m_idleThreads;
            m_hasWork.wait(lock, [this] { return m_isEnding || !m_backgroundTasks.empty(); });
            --m_idleThreads;
            if (m_isEnding) {
                return;
            }
            task = takeFirst(m_backgroundTasks);
        }
        task();
    }
}

void DRThreadPoolTaskQueue::runOnMainThread(std::function<void()> task)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_mainTasks.push_back(std::move(task));
    }
    QCoreApplication::postEvent(&m_mainThreadAnchor, new QEvent(QEvent::User)); // which takes it over
}

/// One event, one task: tasks and the event loop's other events take turns.
void DRThreadPoolTaskQueue::runNextMainTask()
{
    std::function<void()> task;
    {
        const std::scoped_lock lock(m_mutex);
        task = takeFirst(m_mainTasks);
    }
    task();
}
