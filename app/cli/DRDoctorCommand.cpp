#include "app/cli/DRDoctorCommand.h"

#include "app/cli/DRBackupChoice.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRPhoneChoice.h"
#include "app/cli/DRTerminal.h"
#include "app/DRMigrateStartup.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "platform/media_library/DRMusicLibrary.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QStorageInfo>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// One thing that a transfer needs.
struct Check {
    QString name;
    QString found;            ///< what is there, when all is well
    DRCommandOutcome problem; ///< Done when all is well; a next step with it is advice
};

/// The folder itself or the nearest one above it that exists.
QString nearestExisting(const QString& path)
{
    QFileInfo folder(path);
    while (!folder.exists() && !folder.isRoot()) {
        folder.setFile(folder.absolutePath());
    }
    return folder.absoluteFilePath();
}

Check checkBackups(DRMigrateStartup& startup)
{
    const auto list = DRBackupList::ofFolder(startup.backupsFolder(), startup.services());
    if (list.backups.empty()) {
        return {u"backups"_s, {}, DRBackupChoice::noBackupIn(list.root)};
    }
    const auto usable = std::ranges::count_if(list.backups, &DRListedBackup::isReadable);
    const QString found = u"%1 found in %2, %3 usable"_s.arg(list.backups.size()).arg(list.root).arg(usable);
    if (usable > 0) {
        return {u"backups"_s, found, {}};
    }
    // None can be taken, so this answers why.
    const auto choice = DRBackupChoice::choose({}, startup.backupsFolder(), startup.services());
    return {u"backups"_s, found, std::get<DRCommandOutcome>(choice)};
}

Check checkPhone(DRMigrateStartup& startup)
{
    const auto choice = DRPhoneChoice::open(startup);
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return {u"phone"_s, {}, *refusal};
    }
    const DRDCDevice& phone = *std::get<DRDCDevicePointer>(choice);
    return {u"phone"_s, u"%1, %2 apps"_s.arg(phone.marketingName()).arg(phone.backupPackets().size()),
            DRPhoneChoice::compatibility(phone)};
}

/// Looks without making anything.
Check checkWorkingFolder(const DRMigrateStartup& startup)
{
    const QString& path = startup.folders().temporary;
    const QFileInfo folder(path);
    const auto others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if (folder.isSymLink() || (folder.exists() && !folder.isDir())) {
        return {u"working folder"_s,
                {},
                {DRExitCode::FailedPhoneUnchanged, path + u" is no folder of its own."_s, u"remove or rename it"_s}};
    }
    if (folder.exists() && (!folder.isWritable() || (folder.permissions() & others) != 0)) {
        return {
            u"working folder"_s,
            {},
            {DRExitCode::FailedPhoneUnchanged, path + u" is not ours alone."_s, u"type: chmod 700 '%1'"_s.arg(path)}};
    }
    if (!QFileInfo(nearestExisting(path)).isWritable()) {
        return {u"working folder"_s,
                {},
                {DRExitCode::FailedPhoneUnchanged, path + u" cannot be made."_s,
                 u"set XDG_CACHE_HOME to a folder of yours"_s}};
    }
    return {u"working folder"_s, path, {}};
}

Check checkDiskSpace(const DRMigrateStartup& startup)
{
    static constexpr qint64 kLittle = 256LL * 1024 * 1024;
    const QStorageInfo disk(nearestExisting(startup.folders().temporary));
    const QString found = sizeText(static_cast<quint64>(disk.bytesAvailable())) + u" free for the working folder"_s;
    if (disk.isValid() && disk.bytesAvailable() < kLittle) {
        return {u"disk space"_s,
                {},
                {DRExitCode::FailedPhoneUnchanged, found + u", which is little."_s, u"make room on this computer"_s}};
    }
    return {u"disk space"_s, found, {}};
}

Check checkDataFolder(const DRMigrateStartup& startup)
{
    const QString& path = startup.folders().data;
    if (QFileInfo(nearestExisting(path)).isWritable()) {
        return {u"phone backups"_s, path, {}};
    }
    return {u"phone backups"_s,
            {},
            {DRExitCode::FailedPhoneUnchanged, path + u" cannot be written."_s,
             u"set XDG_DATA_HOME to a folder of yours"_s}};
}

bool isOk(const Check& check)
{
    return check.problem.code == DRExitCode::Done;
}

/// Only music needs it.
Check checkMusicLibrary(const DRMigrateStartup& startup)
{
    const QString name = u"music library"_s;
    const DRMediaAccessController& media = startup.services().mediaAccessController;
    const auto library = media.iTunesLibrary();
    if (!library) {
        return {name,
                u"none on this computer, so music is not moved"_s,
                {.nextStep = u"to move music, name the library's XML file: --music FILE"_s}};
    }
    const QString found = u"%1 songs and %2 playlists in %3"_s.arg(library->trackCount())
                              .arg(library->playlistCount())
                              .arg(media.libraryPath());
    if (!library->problem().isNull()) {
        return {name,
                found + u"; "_s + library->problem(),
                {.nextStep = u"have the music program write its library anew, or name another one: --music FILE"_s}};
    }
    return {name, found, {}};
}

QJsonObject jsonOf(const Check& check)
{
    return {
        {u"name"_s, check.name},
        {u"ok"_s, isOk(check)},
        {u"message"_s, isOk(check) ? check.found : check.problem.message},
        {u"fix"_s, DRJsonOutput::text(check.problem.nextStep)},
    };
}

QString textOf(const Check& check)
{
    if (isOk(check) && !check.problem.nextStep.isEmpty()) {
        return u"note     %1: %2\n         advice: %3\n"_s.arg(check.name, withoutControlCharacters(check.found),
                                                               check.problem.nextStep);
    }
    if (isOk(check)) {
        return u"ok       %1: %2\n"_s.arg(check.name, withoutControlCharacters(check.found));
    }
    return u"problem  %1: %2\n         fix: %3\n"_s.arg(check.name, withoutControlCharacters(check.problem.message),
                                                        withoutControlCharacters(check.problem.nextStep));
}

} // namespace

DRCommandOutcome DRDoctorCommand::run()
{
    const std::vector<Check> checks{checkBackups(startup()),      checkPhone(startup()),
                                    checkMusicLibrary(startup()), checkWorkingFolder(startup()),
                                    checkDiskSpace(startup()),    checkDataFolder(startup())};
    QJsonArray objects;
    QString text;
    for (const Check& check : checks) {
        objects << jsonOf(check);
        text += textOf(check);
    }
    if (line().json) {
        terminal().data(DRJsonOutput::document({{u"version"_s, 1}, {u"checks"_s, objects}}));
    }
    if (!line().json) {
        terminal().data(text);
    }
    const auto missing = std::ranges::find_if_not(checks, isOk);
    // The message stands in the list already.
    return {.code = missing == checks.end() ? DRExitCode::Done : missing->problem.code, .message = {}, .nextStep = {}};
}
