#pragma once

#include <memory>

#include "convert/media/DRMigrateAndroidMediaDataType.h"

class DRVideoCleaner;

/// Photos and videos on the phone's side: copied to the phone's storage below "TarvexTransfer/Media".
class DRMigrateAndroidPhotos final : public DRMigrateAndroidMediaDataType {
public:
    /// `cleaner`, never null, prepares videos for phones of Android 2 and older.
    DRMigrateAndroidPhotos(const DRMigrateServices& services, std::shared_ptr<const DRVideoCleaner> cleaner);
    ~DRMigrateAndroidPhotos() override;

    /// Cleans the videos, if they are to be copied, for phones whose `androidBaseVersion` is 2 or lower. One whose cleaned
    /// copy cannot be written is left out, and the report says so.
    [[nodiscard]] bool save() override;

    void transferFilesWithTarget(TransferHandler handler) override;

    /// The folder on the phone, relative to its storage; empty before the copy.
    [[nodiscard]] const QString& devicePath() const { return m_devicePath; }

private:
    std::shared_ptr<const DRVideoCleaner> m_cleaner;
    QString m_devicePath;
};
