#pragma once

#include <QString>

class DRBRBackupInfo;

/// What a description names of the phone that a backup comes from.
struct DRPhoneNames {
    QString marketingName;
    QString identifier;
};

/// Makes the target folder of a phone backup (mode 0700) and writes its description, BackupData.plist: a property list
/// with "BackupName", "BackupDate", "DeviceSoftwareVersion", "ApplicationSoftwareVersion", "DeviceName",
/// "DeviceIdentifier" and "Packets", the IDs of the packets that were asked for. False on failure.
[[nodiscard]] bool beginPhoneBackup(const DRBRBackupInfo& backupInfo, const DRPhoneNames& phone);
