#include "platform/folder_phone/DRPhoneBackupDescription.h"

#include "platform/core/DRFiles.h"
#include "platform/core/DRPrivateFolder.h"
#include "platform/core/DRPropertyList.h"
#include "platform/device/DRBRBackupInfo.h"

#include <QVariantMap>

using namespace Qt::StringLiterals;

bool beginPhoneBackup(const DRBRBackupInfo& backupInfo, const DRPhoneNames& phone)
{
    QVariantList packets;
    for (const QString& packetID : backupInfo.packetIDs()) {
        packets.append(packetID);
    }
    const QVariantMap description{
        {u"BackupName"_s, backupInfo.backupName()},
        {u"BackupDate"_s, backupInfo.backupDate()},
        {u"DeviceSoftwareVersion"_s, backupInfo.deviceSoftwareVersion()},
        {u"ApplicationSoftwareVersion"_s, backupInfo.applicationSoftwareVersion()},
        {u"DeviceName"_s, phone.marketingName},
        {u"DeviceIdentifier"_s, phone.identifier},
        {u"Packets"_s, packets},
    };
    return DRPrivateFolder::make(backupInfo.targetPath()) &&
           DRFiles::writeAtomically(backupInfo.targetPath() + u"/BackupData.plist"_s,
                                    DRPropertyList::xmlFromDictionary(description));
}
