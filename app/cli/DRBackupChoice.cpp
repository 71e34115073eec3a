#include "app/cli/DRBackupChoice.h"

#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "platform/core/DRLog.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Choice = DRResult<DRMigrateIPhoneBackupEntryPointer>;

/// The backup itself when it can be read, else why not. Encryption is tested first, for it hides the rest.
Choice readable(const DRListedBackup& backup)
{
    const QString name = withoutControlCharacters(backup.entry->deviceName());
    if (backup.entry->isEncrypted()) {
        return DRCommandOutcome{DRExitCode::EncryptedBackup,
                                u"The backup of \"%1\" is encrypted, so its content cannot be read."_s.arg(name),
                                u"turn off \"Encrypt backup\" in iTunes, back the iPhone up again, then type: "
                                "phone-migrate backups"_s};
    }
    if (!backup.entry->isUsable()) {
        return DRCommandOutcome{
            DRExitCode::SystemTooOld,
            u"The backup of \"%1\" was made by system version 3 or older, which cannot be read."_s.arg(name),
            u"update the iPhone, back it up again, then type: phone-migrate backups"_s};
    }
    if (backup.layout == DRIPhoneBackupFiles::Layout::Database) {
        return DRCommandOutcome{
            DRExitCode::UnreadableLayout,
            u"The backup of \"%1\" keeps its files in a newer layout (Manifest.db), which cannot be read."_s.arg(name),
            u"choose a backup made by system version 9 or older: phone-migrate backups"_s};
    }
    return backup.entry;
}

/// The one to take when nobody said which.
Choice onlyReadable(const DRBackupList& list)
{
    if (list.backups.empty()) {
        return DRBackupChoice::noBackupIn(list.root);
    }
    const auto count = std::ranges::count_if(list.backups, &DRListedBackup::isReadable);
    if (count > 1) {
        return DRCommandOutcome{DRExitCode::Usage,
                                u"There is more than one backup to choose from:\n"_s + list.table().trimmed(),
                                u"name one by its number or device, such as: phone-migrate inspect 1"_s};
    }
    const auto found = std::ranges::find_if(list.backups, &DRListedBackup::isReadable);
    return readable(found == list.backups.end() ? list.backups.front() : *found);
}

Choice inFolder(const QString& folder, const DRMigrateServices& services)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    if (path.isEmpty()) {
        return DRCommandOutcome{DRExitCode::NoBackup, u"There is no folder %1."_s.arg(withoutControlCharacters(folder)),
                                u"see which backups there are: phone-migrate backups"_s};
    }
    if (const auto entry = DRMigrateUtils::iPhoneBackupEntryAtFolder(path, services)) {
        return readable(DRBackupList::single(entry));
    }
    return onlyReadable(DRBackupList::ofFolder(path, services));
}

/// The row that a number or device name means; none when it means none.
const DRListedBackup* namedRow(const QString& argument, const DRBackupList& list)
{
    bool isNumber = false;
    const qulonglong number = argument.toULongLong(&isNumber);
    if (isNumber && number >= 1 && number <= list.backups.size()) {
        return &list.backups.at(number - 1);
    }
    const DRListedBackup* newest = nullptr;
    for (const DRListedBackup& backup : list.backups) {
        if (backup.entry->deviceName() != argument) {
            continue;
        }
        if (backup.isReadable()) {
            return &backup;
        }
        newest = newest == nullptr ? &backup : newest;
    }
    return newest;
}

} // namespace

Choice DRBackupChoice::choose(const QString& argument, const QString& backupsFolder, const DRMigrateServices& services)
{
    if (argument.contains(u'/') || argument == u"." || argument == u"..") {
        return inFolder(argument, services);
    }
    const DRBackupList list = DRBackupList::ofFolder(backupsFolder, services);
    if (argument.isEmpty()) {
        return onlyReadable(list);
    }
    if (const DRListedBackup* row = namedRow(argument, list)) {
        return readable(*row);
    }
    if (QFileInfo(argument).isDir()) {
        return inFolder(argument, services);
    }
    if (list.backups.empty()) {
        return noBackupIn(list.root);
    }
    return DRCommandOutcome{DRExitCode::NoBackup,
                            u"No backup has the number or device name \"%1\", and there is no such folder."_s.arg(
                                withoutControlCharacters(argument)),
                            u"see which backups there are: phone-migrate backups"_s};
}

DRCommandOutcome DRBackupChoice::noBackupIn(const QString& folder)
{
    const QString next =
        u"back the iPhone up with iTunes on this computer, without encryption, or name the folder that holds "
        "backups: phone-migrate backups --backups DIR"_s;
    if (folder.isEmpty()) {
        return {DRExitCode::NoBackup, u"There is no folder in which iPhone backups would be."_s, next};
    }
    const QString shown = withoutControlCharacters(folder);
    const QFileInfo info(folder);
    if (!info.isDir()) {
        return {DRExitCode::NoBackup, u"No iPhone backup was found: there is no folder %1."_s.arg(shown), next};
    }
    if (!info.isReadable()) {
        return {DRExitCode::NoBackup, u"No iPhone backup was found: the folder %1 cannot be read."_s.arg(shown), next};
    }
    return {DRExitCode::NoBackup, u"No iPhone backup was found in %1."_s.arg(shown), next};
}
