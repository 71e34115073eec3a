#include "platform/core/DRThreadPoolTaskQueue.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace {

/// Tasks wait for disks more than they compute, so a small computer still gets this many.
constexpr int kMinimumThreads = 4;

} // namespace

DRThreadPoolTaskQueue::DRThreadPoolTaskQueue()
{
    m_pool.setMaxThreadCount(std::max(kMinimumThreads, QThread::idealThreadCount()));
}

DRThreadPoolTaskQueue::~DRThreadPoolTaskQueue()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void DRThreadPoolTaskQueue::runInBackground(std::function<void()> task)
{
    m_pool.start(std::move(task));
}

void DRThreadPoolTaskQueue::runOnMainThread(std::function<void()> task)
{
    QMetaObject::invokeMethod(&m_mainThreadAnchor, std::move(task), Qt::QueuedConnection);
}
