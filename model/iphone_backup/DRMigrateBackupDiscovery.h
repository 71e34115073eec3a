#pragma once

#include <vector>

#include <QString>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "platform/core/DRUserFolders.h"

/// Finding the iPhone backups of this computer. Reads property lists only, never a backup's content.
namespace DRMigrateUtils {

/// Where backups lie by default: the user's application-support folder / "MobileSync" / "Backup". Empty when there is
/// no such user folder.
[[nodiscard]] QString iPhoneDefaultBackupPath(const DRUserFolders& folders);

/// One entry per folder directly inside `root` that holds a readable "Info.plist", in the order of the listing (by
/// name). Encrypted backups are included.
[[nodiscard]] std::vector<DRMigrateIPhoneBackupEntryPointer>
iPhoneBackupEntriesAtPath(const QString& root, const DRMigrateServices& services);

/// The entry of one backup folder; null when it holds no readable "Info.plist".
[[nodiscard]] DRMigrateIPhoneBackupEntryPointer iPhoneBackupEntryAtFolder(const QString& folder,
                                                                          const DRMigrateServices& services);

/// The newest unencrypted backup of each device name, newest first. Entries without a device name are left out; of
/// equal dates the first in the list stays.
[[nodiscard]] std::vector<DRMigrateIPhoneBackupEntryPointer>
latestBackupEntriesFromList(const std::vector<DRMigrateIPhoneBackupEntryPointer>& list);

} // namespace DRMigrateUtils
