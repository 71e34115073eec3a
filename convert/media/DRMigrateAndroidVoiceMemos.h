#pragma once

#include "convert/media/DRMigrateAndroidMediaDataType.h"

/// Voice memos on the phone's side: copied to the phone's storage below "TarvexTransfer/Recordings".
class DRMigrateAndroidVoiceMemos final : public DRMigrateAndroidMediaDataType {
public:
    using DRMigrateAndroidMediaDataType::DRMigrateAndroidMediaDataType;

    /// All entries, whatever their kind.
    [[nodiscard]] std::vector<DRDCFilePointer> entriesToTransfer() const override;

    void transferFilesWithTarget(TransferHandler handler) override;

    /// The folder on the phone, relative to its storage; empty before the copy.
    [[nodiscard]] const QString& devicePath() const { return m_devicePath; }

private:
    QString m_devicePath;
};
