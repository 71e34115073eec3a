#include "platform/folder_phone/DRFolderPhoneTask.h"

#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/device/DRDCNotifications.h"
#include "platform/folder_phone/DRFileRun.h"
#include "platform/folder_phone/DRFolderPhone.h"
#include "platform/folder_phone/DRPacketRun.h"

#include <optional>
#include <utility>

/// A run on its way through its items.
struct DRFolderPhoneTask::Chain {
    std::unique_ptr<DRTaskRun> run;
    std::size_t count = 0;
    std::optional<DRProgressMeter> meter; ///< used in the background only
};

DRFolderPhoneTask::DRFolderPhoneTask(std::shared_ptr<const DRFolderPhone> phone,
                                     DRTaskQueue& taskQueue,
                                     DRNotificationCenter& notificationCenter)
    : m_phone(std::move(phone)), m_taskQueue(taskQueue), m_notificationCenter(notificationCenter)
{
}

void DRFolderPhoneTask::backupPacketsWithDevice(const DRDCDevicePointer& device,
                                                const DRBRBackupInfo& backupInfo,
                                                const QStringList& sortOrder,
                                                PacketHandler handler)
{
    DRPhoneNames names{.marketingName = m_phone->marketingName(), .identifier = m_phone->identifier()};
    start(std::make_unique<DRPacketBackupRun>(DRPacketRun::Request{device, backupInfo, sortOrder, std::move(handler)},
                                              m_phone->packets(), std::move(names), poster()));
}

void DRFolderPhoneTask::restorePacketsWithDevice(const DRDCDevicePointer& device,
                                                 const DRBRBackupInfo& backupInfo,
                                                 const QStringList& sortOrder,
                                                 PacketHandler handler)
{
    start(std::make_unique<DRPacketRestoreRun>(DRPacketRun::Request{device, backupInfo, sortOrder, std::move(handler)},
                                               m_phone->packets(), poster()));
}

void DRFolderPhoneTask::syncContentWithDevice(const DRDCDevicePointer& device,
                                              DRDCFilesystem& /*filesystem*/,
                                              const std::vector<DRDCFilePointer>& contentFilesToCopy,
                                              const QStringList& deviceFilesToDelete,
                                              FileHandler handler)
{
    start(std::make_unique<DRFileRun>(
        DRFileRun::Request{device, contentFilesToCopy, deviceFilesToDelete, std::move(handler)},
        DRFolderPhoneStorage(m_phone->root(), m_phone->memoryUsableCapacity())));
}

void DRFolderPhoneTask::start(std::unique_ptr<DRTaskRun> run)
{
    auto chain = std::make_shared<Chain>(Chain{.run = std::move(run), .count = 0, .meter = {}});
    m_taskQueue.runOnMainThread([self = shared_from_this(), chain = std::move(chain)] { self->begin(chain); });
}

void DRFolderPhoneTask::begin(const ChainPointer& chain)
{
    chain->run->willBegin();
    const auto prepare = [this, chain] {
        std::vector<quint64> itemBytes = chain->run->prepare();
        chain->count = itemBytes.size();
        chain->meter.emplace(std::move(itemBytes), reporter());
        return DRStepOutcome();
    };
    inBackground(prepare, [this, chain](const DRStepOutcome&) { runItem(chain, 0); });
}

void DRFolderPhoneTask::runItem(const ChainPointer& chain, std::size_t index)
{
    if (index == chain->count) {
        end(chain);
        return;
    }
    chain->run->itemWillBegin(index);
    const auto work = [chain, index] {
        DRStepOutcome outcome =
            chain->run->work(index, [&meter = *chain->meter](quint64 bytes) { meter.advance(bytes); });
        chain->meter->finishItem();
        return outcome;
    };
    inBackground(work, [this, chain, index](const DRStepOutcome& outcome) {
        chain->run->itemDidEnd(index, outcome);
        runItem(chain, index + 1);
    });
}

void DRFolderPhoneTask::end(const ChainPointer& chain)
{
    setProgress(1.0);
    chain->run->didEnd();
}

void DRFolderPhoneTask::inBackground(std::function<DRStepOutcome()> work,
                                     std::function<void(const DRStepOutcome&)> completion)
{
    m_taskQueue.runInBackground(
        [self = shared_from_this(), work = std::move(work), completion = std::move(completion)]() mutable {
            const DRStepOutcome outcome = work();
            work = nullptr; // the completion holds the same, and ends on the main thread
            DRTaskQueue& queue = self->m_taskQueue;
            queue.runOnMainThread(
                [self = std::move(self), completion = std::move(completion), outcome] { completion(outcome); });
        });
}

DRTaskRun::Post DRFolderPhoneTask::poster()
{
    // Held by the run, which what is under way holds together with this task.
    return [this](const QString& name, const QVariantMap& userInfo) { post(name, userInfo); };
}

DRProgressMeter::Report DRFolderPhoneTask::reporter()
{
    return [this](double fraction) {
        m_taskQueue.runOnMainThread([self = shared_from_this(), fraction] { self->setProgress(fraction); });
    };
}

void DRFolderPhoneTask::setProgress(double fraction)
{
    m_progress = fraction;
    post(DRDCNotifications::kTaskDidUpdate, {});
}

void DRFolderPhoneTask::post(const QString& name, const QVariantMap& userInfo)
{
    m_notificationCenter.post(
        {.name = name, .object = DRDCDeviceTaskPointer(shared_from_this()), .userInfo = userInfo});
}
