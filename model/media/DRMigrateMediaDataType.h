#pragma once

#include <functional>
#include <memory>

#include "model/backup_entry/DRMigrateDataType.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRDCDeviceTask.h"

class DRDCFilesystem;

/// Media whose files are copied to the phone's storage instead of being written into packets. Base of the phone-side
/// media types, which copy, and of the iPhone-side media readers, whose files are counted and sized by kind. Entries
/// are `DRDCFilePointer`.
class DRMigrateMediaDataType : public DRMigrateDataType {
public:
    /// Called once when the copy has ended, with the files that failed; none at all when there was nothing to copy.
    using TransferHandler = std::function<void(const DRDCFileFailures&)>;

    explicit DRMigrateMediaDataType(const DRMigrateServices& services);
    ~DRMigrateMediaDataType() override;

    /// The bytes of `entriesToTransfer`. Summed once; a sum of 0 is made again at each call.
    [[nodiscard]] quint64 bytesToTransfer() const override;

    /// All of them once restored, else the copy task's share, rounded down.
    [[nodiscard]] quint64 bytesTransferred() const override;

    /// How many entries are of one of the kinds in the mask, and their bytes.
    [[nodiscard]] qsizetype mediaCountOfFileKinds(quint32 mask) const;
    [[nodiscard]] quint64 bytesNeededForFileKinds(quint32 mask) const;

    /// The files to copy. The base: the entries whose kind is in `fileKindsToTransfer`.
    [[nodiscard]] virtual std::vector<DRDCFilePointer> entriesToTransfer() const;

    /// Starts copying and calls `handler` on the main thread when it has ended. The base only keeps the handler and
    /// observes the copy's progress.
    virtual void transferFilesWithTarget(TransferHandler handler);

    /// The device layer's progress event. An event of another task resets the progress to 0 until the next one of its
    /// own comes: kept, the copies run one after the other.
    void deviceTaskDidUpdateTask(const DRNotification& notification);

    /// Ends the copy: sets flag 0x10 whatever the result, stops observing, reports the failed files, calls the handler.
    void transferFilesDone(const DRDCFileFailures& failures);

    /// Which kinds are copied, as a mask of file kinds.
    [[nodiscard]] quint32 fileKindsToTransfer() const { return m_fileKindsToTransfer; }
    void setFileKindsToTransfer(quint32 mask) { m_fileKindsToTransfer = mask; }

    /// Identifies the device task that copies; empty before the copy.
    [[nodiscard]] const QString& taskID() const { return m_taskID; }
    void setTaskID(const QString& taskID) { m_taskID = taskID; }

protected:
    /// What a subclass does to each file before the copy: say where it goes on the phone.
    using FilePreparation = std::function<void(DRDCFile& file, const DRDCFilesystem& filesystem)>;

    /// Puts each file into this folder of the phone's storage, under its "TargetFileName" or what of it makes one name.
    [[nodiscard]] static FilePreparation placementIn(const QString& folder);

    /// Starts a task with this ID that copies `entriesToTransfer` to the active phone. With no files the copy ends at
    /// once without a result; when the phone is gone, at once with every file failed.
    void copyEntries(const QString& taskID, const FilePreparation& prepare);

    /// The files of an entry list.
    [[nodiscard]] static std::vector<DRDCFilePointer> filesOf(const DREntryList& entries);

private:
    quint32 m_fileKindsToTransfer = 0;
    QString m_taskID;
    TransferHandler m_handler;
    std::unique_ptr<DRNotificationCenter::Registration> m_progressRegistration;
    mutable quint64 m_bytesToTransfer = 0;
    double m_mediaProgress = 0.0;
};
