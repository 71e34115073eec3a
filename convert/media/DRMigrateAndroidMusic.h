#pragma once

#include "model/media/DRMigrateMediaDataType.h"

/// Music on the phone's side: copied to where the phone's file system proposes.
class DRMigrateAndroidMusic final : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    [[nodiscard]] bool load() override;
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;
    [[nodiscard]] bool save() override;

    /// All entries, whatever their kind.
    [[nodiscard]] std::vector<DRDCFilePointer> entriesToTransfer() const override;

    void transferFilesWithTarget(TransferHandler handler) override;
};
