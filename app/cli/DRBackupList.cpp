#include "app/cli/DRBackupList.h"

#include "app/cli/DRTextTable.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Entries = std::vector<DRMigrateIPhoneBackupEntryPointer>;

QString reasonOf(const DRMigrateIPhoneBackupEntryPointer& entry, const Entries& offered)
{
    if (entry->isEncrypted()) {
        return u"encrypted"_s;
    }
    if (!entry->isUsable()) {
        return u"tooOld"_s;
    }
    if (entry->deviceName().isNull()) {
        return u"noDeviceName"_s;
    }
    return std::ranges::find(offered, entry) == offered.end() ? u"superseded"_s : QString();
}

DRListedBackup listed(const DRMigrateIPhoneBackupEntryPointer& entry, const Entries& offered)
{
    return {
        .entry = entry,
        .reason = reasonOf(entry, offered),
        .layout = DRIPhoneBackupFiles::layoutOfBackup(entry->backupPath()),
    };
}

QString stateText(const DRListedBackup& backup)
{
    static const std::map<QString, QString> kTexts{
        {u"encrypted"_s, u"no: encrypted"_s},
        {u"tooOld"_s, u"no: system too old"_s},
        {u"noDeviceName"_s, u"no: without a device name"_s},
        {u"superseded"_s, u"no: a newer one is offered"_s},
    };
    const auto text = kTexts.find(backup.reason);
    if (text != kTexts.end()) {
        return text->second;
    }
    return backup.isReadable() ? u"yes"_s : u"no: its newer layout cannot be read"_s;
}

} // namespace

DRBackupList DRBackupList::ofFolder(const QString& root, const DRMigrateServices& services)
{
    DRBackupList list{.root = root, .backups = {}};
    if (root.isEmpty()) {
        return list;
    }
    Entries entries = DRMigrateUtils::iPhoneBackupEntriesAtPath(root, services);
    const Entries offered = DRMigrateUtils::latestBackupEntriesFromList(entries);
    std::ranges::stable_sort(entries, DRMigrateIPhoneBackupEntry::sortOnDate);
    for (const auto& entry : entries) {
        list.backups.push_back(listed(entry, offered));
    }
    return list;
}

DRListedBackup DRBackupList::single(const DRMigrateIPhoneBackupEntryPointer& entry)
{
    return listed(entry, {entry});
}

QString DRBackupList::table() const
{
    DRTextTable rows({u"#"_s, u"Device"_s, u"Model"_s, u"System"_s, u"Made"_s, u"Usable"_s});
    int number = 0;
    for (const DRListedBackup& backup : backups) {
        const auto& entry = *backup.entry;
        rows.add({QString::number(++number), entry.deviceName(), entry.productType(), entry.productVersion(),
                  entry.lastBackupDate().toLocalTime().toString(u"yyyy-MM-dd HH:mm"), stateText(backup)});
    }
    return backups.empty() ? QString() : rows.text();
}
