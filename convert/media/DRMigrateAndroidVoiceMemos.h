#pragma once

#include "model/media/DRMigrateMediaDataType.h"

/// Voice memos on the phone's side: copied to the phone's storage below "TarvexTransfer/Recordings".
class DRMigrateAndroidVoiceMemos final : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    [[nodiscard]] bool load() override;
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;
    [[nodiscard]] bool save() override;

    /// All entries, whatever their kind.
    [[nodiscard]] std::vector<DRDCFilePointer> entriesToTransfer() const override;

    void transferFilesWithTarget(TransferHandler handler) override;

    /// The folder on the phone, relative to its storage; empty before the copy.
    [[nodiscard]] const QString& devicePath() const { return m_devicePath; }

private:
    QString m_devicePath;
};
