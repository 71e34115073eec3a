#pragma once

#include "platform/device/DRDCDeviceTask.h"
#include "platform/folder_phone/DRFolderPhoneStorage.h"
#include "platform/folder_phone/DRTaskRun.h"

#include <unordered_map>
#include <vector>

/// Brings the phone's storage up to date: first the deletions, which make room, then the copies.
class DRFileRun final : public DRTaskRun {
public:
    /// What a task is asked to do. The device is held until the handler has returned.
    struct Request {
        DRDCDevicePointer device;
        std::vector<DRDCFilePointer> filesToCopy;
        QStringList pathsToDelete;
        DRDCDeviceTask::FileHandler handler;
    };

    DRFileRun(Request request, DRFolderPhoneStorage storage);

    [[nodiscard]] std::vector<quint64> prepare() override;
    [[nodiscard]] DRStepOutcome work(std::size_t index, const DRByteProgress& progress) override;
    void itemDidEnd(std::size_t index, const DRStepOutcome& outcome) override;
    void didEnd() override;

private:
    /// One file of the phone: to be deleted, or to be written.
    struct Item {
        DRDCFilePointer file;
        QString targetPath;
        bool isDeletion = false;
    };

    DRDCDevicePointer m_device;
    DRDCDeviceTask::FileHandler m_handler;
    DRFolderPhoneStorage m_storage;
    std::vector<Item> m_items;
    std::unordered_map<const DRDCFile*, QString> m_places; ///< of what is copied: a song of two playlists comes twice
    std::vector<DRDCFileFailure> m_failures;
};
