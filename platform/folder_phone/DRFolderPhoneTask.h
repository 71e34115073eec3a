#pragma once

#include "platform/device/DRDCDeviceTask.h"
#include "platform/folder_phone/DRProgressMeter.h"
#include "platform/folder_phone/DRTaskRun.h"

#include <functional>
#include <memory>

#include <QVariantMap>

class DRFolderPhone;
class DRNotificationCenter;
class DRTaskQueue;

/// A task of a phone in a folder. Each packet or file is one piece of background work; everything between them, events
/// included, happens on the main thread. What is under way keeps the task, its phone and the given device alive until
/// the handler returns.
class DRFolderPhoneTask final : public DRDCDeviceTask, public std::enable_shared_from_this<DRFolderPhoneTask> {
public:
    /// `taskQueue` and `notificationCenter` outlive the task.
    DRFolderPhoneTask(std::shared_ptr<const DRFolderPhone> phone,
                      DRTaskQueue& taskQueue,
                      DRNotificationCenter& notificationCenter);

    [[nodiscard]] double progress() const override { return m_progress; }

    void backupPacketsWithDevice(const DRDCDevicePointer& device,
                                 const DRBRBackupInfo& backupInfo,
                                 const QStringList& sortOrder,
                                 PacketHandler handler) override;
    void restorePacketsWithDevice(const DRDCDevicePointer& device,
                                  const DRBRBackupInfo& backupInfo,
                                  const QStringList& sortOrder,
                                  PacketHandler handler) override;
    void syncContentWithDevice(const DRDCDevicePointer& device,
                               DRDCFilesystem& filesystem,
                               const std::vector<DRDCFilePointer>& contentFilesToCopy,
                               const QStringList& deviceFilesToDelete,
                               FileHandler handler) override;

private:
    struct Chain;
    using ChainPointer = std::shared_ptr<Chain>;

    void start(std::unique_ptr<DRTaskRun> run);
    void begin(const ChainPointer& chain);
    void runItem(const ChainPointer& chain, std::size_t index);
    void end(const ChainPointer& chain);

    /// Runs `work` in the background, then `completion` on the main thread. What the two hold is released there.
    void inBackground(std::function<DRStepOutcome()> work, std::function<void(const DRStepOutcome&)> completion);

    [[nodiscard]] DRTaskRun::Post poster();
    [[nodiscard]] DRProgressMeter::Report reporter();
    void setProgress(double fraction);
    void post(const QString& name, const QVariantMap& userInfo);

    std::shared_ptr<const DRFolderPhone> m_phone;
    DRTaskQueue& m_taskQueue;
    DRNotificationCenter& m_notificationCenter;
    double m_progress = 0;
};
