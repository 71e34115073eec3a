#pragma once

#include "app/cli/DRBackupList.h"
#include "app/cli/DRCommandOutcome.h"

/// Finds the backup that a BACKUP argument means.
namespace DRBackupChoice {

/// The readable backup that `argument` means: a number or a device name of the list of `backupsFolder`, or a folder
/// that is a backup or holds one usable one. Empty takes the only usable backup of the list. Of several with the same
/// name the offered one is meant. Else why there is none: nothing found, several to choose from, or a backup that
/// cannot be read.
[[nodiscard]] DRResult<DRMigrateIPhoneBackupEntryPointer>
choose(const QString& argument, const QString& backupsFolder, const DRMigrateServices& services);

/// There is no backup in this folder, and what to do about it.
[[nodiscard]] DRCommandOutcome noBackupIn(const QString& folder);

} // namespace DRBackupChoice
