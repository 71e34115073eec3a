#pragma once

#include "model/backup_entry/DRMigrateBackupEntry.h"

/// The phone's side of a migration: one data type per app packet that will be edited, under its packet ID, and one per
/// media kind whose files are copied, under its key.
class DRMigrateAndroidBackupEntry final : public DRMigrateBackupEntry {
public:
    using DRMigrateBackupEntry::DRMigrateBackupEntry;

    /// Makes the data types of the packets in which the phone keeps this kind (`key`), or, when it keeps it in none, of
    /// the media key itself. A packet that no converter knows gets none. Without a device nothing is offered.
    void addDataType(const QString& key, const DRDCDevicePointer& device) override;

    /// The packets that must be fetched, in ascending order.
    [[nodiscard]] QStringList packetIDsForAddedDataTypes() const;

    /// Starts merging each data type with the source's data type under its `sourceKey`; one without such a source is
    /// not merged and not reported. Answers true at once.
    bool mergeWithBackup(const DRMigrateBackupEntry& source) override;

    /// Copies the description BackupData.plist, with a new "BackupDate", into the working folder and starts saving
    /// every data type. A missing description is no failure.
    void saveAll() override;
};
