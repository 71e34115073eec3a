#pragma once

#include "platform/device/DRDCDevice.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/folder_phone/DRFolderPhoneDescription.h"
#include "platform/folder_phone/DRFolderPhonePackets.h"
#include "platform/folder_phone/DRFolderPhoneRoot.h"
#include "platform/folder_phone/DRUsedSpace.h"

#include <memory>

#include <QString>

class DRNotificationCenter;
class DRTaskQueue;

/// A phone that is a directory:
///
///     phone.json                           marketingName, androidBaseVersion, appProductRevision, memoryUsableCapacity
///     packets/<packet ID>/fullbackupdata   the app's data as the phone would back it up
///     storage/                             the phone's shared storage
///
/// Keys that are missing take defaults. See docs/formats/phone-folder.md.
class DRFolderPhone final : public DRDCDevice,
                            public DRDCFilesystem,
                            public std::enable_shared_from_this<DRFolderPhone> {
    struct Token {};

public:
    /// The phone in this folder; null when there is no such folder, when it holds none of the three (a mistyped path is
    /// no phone), or when its phone.json cannot be read as an object. `taskQueue` and `notificationCenter` outlive the
    /// phone and its tasks.
    [[nodiscard]] static std::shared_ptr<DRFolderPhone>
    open(const QString& folder, DRTaskQueue& taskQueue, DRNotificationCenter& notificationCenter);

    /// For `open` only.
    DRFolderPhone(Token token,
                  DRFolderPhoneRoot root,
                  DRFolderPhoneDescription description,
                  DRTaskQueue& taskQueue,
                  DRNotificationCenter& notificationCenter);

    [[nodiscard]] bool isConnected() const override { return m_root.isThere(); }
    [[nodiscard]] QString identifier() const override { return m_root.identifier(); }
    [[nodiscard]] QString marketingName() const override { return m_description.marketingName; }
    [[nodiscard]] quint32 androidBaseVersion() const override { return m_description.androidBaseVersion; }
    [[nodiscard]] QString appProductRevision() const override { return m_description.appProductRevision; }
    [[nodiscard]] quint32 deviceStateFlags() const override { return isConnected() ? kStateFlagReady : 0; }
    [[nodiscard]] QStringList backupPackets() const override { return packets().offered(); }
    [[nodiscard]] DRDCFilesystem& preferredFilesystem() override { return *this; }
    [[nodiscard]] std::shared_ptr<DRDCDeviceTask> requestTask() override;

    /// The capacity less what packets and storage take; 0 when the phone is gone. Counted again when something has
    /// changed there, which takes a while with many files; see DRUsedSpace.
    [[nodiscard]] quint64 memoryFreeBytes() const override;
    [[nodiscard]] quint64 memoryUsableCapacity() const override { return m_description.memoryUsableCapacity; }
    [[nodiscard]] quint64 memoryUsableFreeBytes() const override { return memoryFreeBytes(); }
    [[nodiscard]] QString defaultPathForFile(const DRDCFile& file) const override;

    /// Counts in the background, so that nobody waits for it who soon asks how much is free.
    void countInBackground();

    /// What tasks work on, as values for any thread.
    [[nodiscard]] const DRFolderPhoneRoot& root() const { return m_root; }
    [[nodiscard]] DRFolderPhonePackets packets() const { return {m_root, memoryUsableCapacity()}; }

private:
    DRFolderPhoneRoot m_root;
    std::shared_ptr<DRUsedSpace> m_usedSpace;
    DRFolderPhoneDescription m_description;
    DRTaskQueue& m_taskQueue;
    DRNotificationCenter& m_notificationCenter;
};
