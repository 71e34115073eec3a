#pragma once

#include <memory>

#include "convert/media/DRMigrateAndroidMediaDataType.h"

class DRVideoCleaner;

/// Photos and videos on the phone's side: copied to the phone's storage below "TarvexTransfer/Media".
class DRMigrateAndroidPhotos final : public DRMigrateAndroidMediaDataType {
public:
    /// `cleaner` prepares videos for phones of Android 2 and older; without one they are copied as they are, with a
    /// warning.
    DRMigrateAndroidPhotos(const DRMigrateServices& services, std::shared_ptr<const DRVideoCleaner> cleaner);
    ~DRMigrateAndroidPhotos() override;

    /// Cleans the videos for phones whose `androidBaseVersion` is 2 or lower.
    [[nodiscard]] bool save() override;

    void transferFilesWithTarget(TransferHandler handler) override;

    /// The folder on the phone, relative to its storage; empty before the copy.
    [[nodiscard]] const QString& devicePath() const { return m_devicePath; }

private:
    std::shared_ptr<const DRVideoCleaner> m_cleaner;
    QString m_devicePath;
};
