#include "model/iphone_backup/DRMigrateBackupDiscovery.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRDates.h"
#include "platform/core/DRPropertyList.h"

#include <QDir>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace {

/// The text under the key; null when it is missing or no text.
QString textUnder(const QVariantMap& dictionary, const QString& key)
{
    const QVariant value = dictionary.value(key);
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
}

QDateTime dateUnder(const QVariantMap& dictionary, const QString& key)
{
    const QVariant value = dictionary.value(key);
    return value.metaType() == QMetaType::fromType<QDateTime>() ? value.toDateTime() : QDateTime();
}

/// Whether the value reads as true: a Boolean, or a number other than 0.
bool isTrueUnder(const QVariantMap& dictionary, const QString& key)
{
    const QVariant value = dictionary.value(key);
    return value.metaType() != QMetaType::fromType<QString>() && value.toBool();
}

void describe(DRMigrateIPhoneBackupEntry& entry, const QVariantMap& info)
{
    entry.setDeviceName(textUnder(info, u"Device Name"_s));
    entry.setDisplayName(textUnder(info, u"Display Name"_s));
    entry.setGuid(textUnder(info, u"GUID"_s));
    entry.setImei(textUnder(info, u"IMEI"_s));
    entry.setSerialNumber(textUnder(info, u"Serial Number"_s));
    entry.setProductType(textUnder(info, u"Product Type"_s));
    entry.setProductVersion(textUnder(info, u"Product Version"_s));
    entry.setITunesVersion(textUnder(info, u"iTunes Version"_s));
    entry.setLastBackupDate(dateUnder(info, u"Last Backup Date"_s));
}

} // namespace

namespace DRMigrateUtils {

QString iPhoneDefaultBackupPath(const DRUserFolders& folders)
{
    return folders.applicationSupport.isEmpty() ? QString() : folders.applicationSupport + u"/MobileSync/Backup"_s;
}

DRMigrateIPhoneBackupEntryPointer iPhoneBackupEntryAtFolder(const QString& folder, const DRMigrateServices& services)
{
    const auto info = DRPropertyList::readDictionary(folder + u"/Info.plist"_s);
    if (!info) {
        return nullptr;
    }
    const auto manifest = DRPropertyList::readDictionary(folder + u"/Manifest.plist"_s);
    auto entry = std::make_shared<DRMigrateIPhoneBackupEntry>(services);
    entry->setBackupPath(folder);
    describe(*entry, *info);
    entry->setEncrypted(manifest && isTrueUnder(*manifest, u"IsEncrypted"_s));
    return entry;
}

std::vector<DRMigrateIPhoneBackupEntryPointer> iPhoneBackupEntriesAtPath(const QString& root,
                                                                         const DRMigrateServices& services)
{
    std::vector<DRMigrateIPhoneBackupEntryPointer> entries;
    if (root.isEmpty()) {
        return entries;
    }
    const QStringList names = QDir(root).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        if (const auto entry = iPhoneBackupEntryAtFolder(root + u'/' + name, services)) {
            entries.push_back(entry);
        }
    }
    return entries;
}

std::vector<DRMigrateIPhoneBackupEntryPointer>
latestBackupEntriesFromList(const std::vector<DRMigrateIPhoneBackupEntryPointer>& list)
{
    std::map<QString, DRMigrateIPhoneBackupEntryPointer> newestByName;
    for (const auto& entry : list) {
        if (entry->deviceName().isNull() || entry->isEncrypted()) {
            continue;
        }
        DRMigrateIPhoneBackupEntryPointer& newest = newestByName[entry->deviceName()];
        if (!newest || DRDates::toReferenceSeconds(entry->lastBackupDate()) >
                           DRDates::toReferenceSeconds(newest->lastBackupDate())) {
            newest = entry;
        }
    }
    std::vector<DRMigrateIPhoneBackupEntryPointer> latest;
    latest.reserve(newestByName.size());
    for (const auto& [name, entry] : newestByName) {
        latest.push_back(entry);
    }
    std::ranges::stable_sort(latest, DRMigrateIPhoneBackupEntry::sortOnDate);
    return latest;
}

} // namespace DRMigrateUtils
