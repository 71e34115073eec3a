#pragma once

#include <vector>

#include <QString>

#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

/// One row of the list of backups.
struct DRListedBackup {
    DRMigrateIPhoneBackupEntryPointer entry;
    QString reason; ///< why it is not offered: "encrypted", "tooOld", "superseded" or "noDeviceName"; null when it is
    DRIPhoneBackupFiles::Layout layout = DRIPhoneBackupFiles::Layout::Unknown;

    /// Whether it is offered and its files can be found, so that it can be taken without asking.
    [[nodiscard]] bool isReadable() const { return reason.isNull() && DRIPhoneBackupFiles::isReadable(layout); }
};

/// The backups of one folder as the command line shows them: the newest first, numbered from 1. Reads property lists
/// only.
struct DRBackupList {
    QString root;
    std::vector<DRListedBackup> backups;

    /// The backups directly inside `root`; none when it is empty or missing.
    [[nodiscard]] static DRBackupList ofFolder(const QString& root, const DRMigrateServices& services);

    /// The list of one backup alone, with the reason that it has by itself.
    [[nodiscard]] static DRListedBackup single(const DRMigrateIPhoneBackupEntryPointer& entry);

    /// For people: number, device, model, system, date, and whether it is usable; "" when there is none.
    [[nodiscard]] QString table() const;
};
