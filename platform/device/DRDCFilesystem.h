#pragma once

#include <memory>

#include <QString>

class DRDCDeviceTask;
class DRDCFile;

/// The shared storage of a phone.
class DRDCFilesystem {
public:
    virtual ~DRDCFilesystem() = default;

    /// Bytes that can still be written.
    [[nodiscard]] virtual quint64 memoryFreeBytes() const = 0;

    /// Bytes that a user can use in all, and those of them that are free.
    [[nodiscard]] virtual quint64 memoryUsableCapacity() const = 0;
    [[nodiscard]] virtual quint64 memoryUsableFreeBytes() const = 0;

    /// Where the phone itself would put the file: a path relative to the storage, such as "Music/name.mp3".
    [[nodiscard]] virtual QString defaultPathForFile(const DRDCFile& file) const = 0;

    /// A new task that copies to this storage.
    [[nodiscard]] virtual std::shared_ptr<DRDCDeviceTask> requestTask() = 0;
};
