#pragma once

#include "convert/media/DRMigrateAndroidMediaDataType.h"

/// Music on the phone's side: copied to where the phone's file system proposes, playlists as M3U files.
class DRMigrateAndroidMusic final : public DRMigrateAndroidMediaDataType {
public:
    using DRMigrateAndroidMediaDataType::DRMigrateAndroidMediaDataType;

    /// All entries, whatever their kind.
    [[nodiscard]] std::vector<DRDCFilePointer> entriesToTransfer() const override;

    void transferFilesWithTarget(TransferHandler handler) override;
};
