#include "model/packet/DRMigrateAndroidBackupEntry.h"

#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPropertyList.h"
#include "platform/device/DRBRBackupRestoreController.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QString kDescriptionFile = u"/BackupData.plist"_s;

/// Writes the description in place: kept, it is only read again by this run.
bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) && file.write(bytes) == bytes.size() &&
           file.flush();
}

} // namespace

void DRMigrateAndroidBackupEntry::addDataType(const QString& key, const DRDCDevicePointer& device)
{
    const QStringList packetIDs = services().backupRestoreController.packetIDsForDataType(
        key, device ? device->backupPackets() : QStringList(), device ? device->appProductRevision() : QString());
    for (const QString& packetID : packetIDs) {
        if (const auto dataType = services().registry.packetType(packetID, services())) {
            dataType->setPacketID(packetID);
            dataType->setDataTypeKey(packetID);
            dataType->setSourceKey(key);
            setDataType(dataType, packetID);
        }
    }
    if (!packetIDs.isEmpty()) {
        return;
    }
    if (const auto dataType = services().registry.mediaType(key, services())) {
        dataType->setDataTypeKey(key);
        dataType->setSourceKey(key);
        setDataType(dataType, key);
    }
}

QStringList DRMigrateAndroidBackupEntry::packetIDsForAddedDataTypes() const
{
    QStringList packetIDs;
    for (const auto& dataType : dataTypesInKeyOrder()) {
        if (!dataType->packetID().isEmpty()) {
            packetIDs.append(dataType->packetID());
        }
    }
    return packetIDs;
}

bool DRMigrateAndroidBackupEntry::mergeWithBackup(const DRMigrateBackupEntry& source)
{
    for (const auto& target : dataTypesInKeyOrder()) {
        const auto sourceType = source.dataTypeForKey(target->sourceKey());
        if (!sourceType) {
            continue;
        }
        target->mergeDataFromWithHandler(
            sourceType, [entry = weak_from_this()](const DRMigrateDataTypePointer& merged, bool /*success*/) {
                if (const auto self = entry.lock()) {
                    self->dataTypeHasBeenMerged(*merged);
                }
            });
    }
    return true;
}

void DRMigrateAndroidBackupEntry::saveAll()
{
    const QString fetched = backupPath();
    auto description = fetched.isEmpty() ? std::nullopt : DRPropertyList::readDictionary(fetched + kDescriptionFile);
    if (description) {
        description->insert(u"BackupDate"_s, services().clock.now());
        const QString copy = DRMigrateUtils::pathToInflateFolder(services().folders.temporary) + kDescriptionFile;
        if (!writeFile(copy, DRPropertyList::xmlFromDictionary(*description))) {
            qCWarning(lcMigrate, "The description of the phone backup could not be copied to the working folder");
        }
    }
    for (const auto& dataType : dataTypesInKeyOrder()) {
        dataType->saveWithHandler([entry = weak_from_this()](const DRMigrateDataTypePointer& saved, bool /*success*/) {
            if (const auto self = entry.lock()) {
                self->dataTypeHasBeenSaved(*saved);
            }
        });
    }
}
