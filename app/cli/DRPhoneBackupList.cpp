#include "app/cli/DRPhoneBackupList.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTextTable.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "platform/device/DRBRBackupRestoreController.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using State = DRPhoneBackup::State;

/// Whether it can be put back, for people and scripts.
struct StateName {
    State state;
    QString usable;
    QString reason;
};

const StateName& nameOf(State state)
{
    static const std::array<StateName, 6> kNames{{
        {State::Whole, u"yes"_s, {}},
        {State::Incomplete, u"in part"_s, u"missingPackets"_s},
        {State::Damaged, u"no"_s, u"damagedPackets"_s},
        {State::Empty, u"no"_s, u"empty"_s},
        {State::NoDescription, u"no"_s, u"noDescription"_s},
        {State::UnreadableDescription, u"no"_s, u"unreadableDescription"_s},
    }};
    return *std::ranges::find(kNames, state, &StateName::state);
}

/// The kinds that the backup's apps hold, as the command line names them, each once; the packet ID of an unknown app.
QStringList kindsIn(const DRPhoneBackup& backup)
{
    QStringList names;
    for (const DRPhoneBackup::App& app : backup.apps) {
        const QString kind = DRBRBackupRestoreController::dataTypeOfPacket(app.packetID);
        names << (kind.isEmpty() ? app.packetID : DRKinds::nameOfKey(kind));
    }
    names.removeDuplicates();
    return names;
}

QJsonObject jsonOf(const DRPhoneBackup& backup)
{
    QJsonArray apps;
    for (const DRPhoneBackup::App& app : backup.apps) {
        apps << QJsonObject{
            {u"packetID"_s, app.packetID},
            {u"kind"_s, DRJsonOutput::text(DRBRBackupRestoreController::dataTypeOfPacket(app.packetID))},
            {u"bytes"_s, DRJsonOutput::bytes(app.sizeBytes)},
            {u"problem"_s, DRJsonOutput::text(app.problem)}};
    }
    return {
        {u"path"_s, backup.path},
        {u"name"_s, DRJsonOutput::text(backup.name)},
        {u"date"_s, DRJsonOutput::time(backup.date)},
        {u"phoneName"_s, DRJsonOutput::text(backup.phoneName)},
        {u"phoneIdentifier"_s, DRJsonOutput::text(backup.phoneIdentifier)},
        {u"apps"_s, apps},
        {u"bytes"_s, DRJsonOutput::bytes(backup.sizeBytes())},
        {u"usable"_s, backup.isUsable()},
        {u"reason"_s, DRJsonOutput::text(nameOf(backup.state).reason)},
        {u"problem"_s, DRJsonOutput::text(backup.problem())},
    };
}

DRResult<DRPhoneBackup> inFolder(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    if (path.isEmpty() || !QFileInfo(path).isDir()) {
        return DRCommandOutcome{DRExitCode::NoBackup, u"There is no folder %1."_s.arg(withoutControlCharacters(folder)),
                                u"see which phone backups there are: phone-migrate phone-backups"_s};
    }
    return DRPhoneBackup::ofFolder(path);
}

} // namespace

DRPhoneBackupList DRPhoneBackupList::ofFolder(const QString& root)
{
    return {.root = root, .backups = DRPhoneBackup::allBelow(root)};
}

QString DRPhoneBackupList::text() const
{
    DRTextTable table({u"#"_s, u"Made"_s, u"Phone"_s, u"Apps"_s, u"Size"_s, u"Usable"_s, u"Name"_s});
    QString folders;
    int number = 0;
    for (const DRPhoneBackup& backup : backups) {
        table.add({QString::number(++number), backup.date.toLocalTime().toString(u"yyyy-MM-dd HH:mm"), backup.phoneName,
                   kindsIn(backup).join(u", "_s), sizeText(backup.sizeBytes()), nameOf(backup.state).usable,
                   backup.name});
        folders += u"%1  %2\n"_s.arg(QString::number(number), withoutControlCharacters(backup.path));
        if (!backup.problem().isNull()) {
            folders += u"   %1\n"_s.arg(withoutControlCharacters(backup.problem()));
        }
    }
    return table.text() + u"Folders:\n"_s + folders;
}

QJsonObject DRPhoneBackupList::json() const
{
    QJsonArray objects;
    for (const DRPhoneBackup& backup : backups) {
        objects << jsonOf(backup);
    }
    return {{u"version"_s, 1}, {u"root"_s, root}, {u"phoneBackups"_s, objects}};
}

DRResult<DRPhoneBackup> DRPhoneBackupList::choose(const QString& argument) const
{
    if (argument.contains(u'/') || argument == u"." || argument == u"..") {
        return inFolder(argument);
    }
    bool isNumber = false;
    const qulonglong number = argument.toULongLong(&isNumber);
    if (isNumber && number >= 1 && number <= backups.size()) {
        return backups.at(number - 1);
    }
    const auto isMeant = [&argument](const DRPhoneBackup& backup) { return backup.name == argument; };
    const auto found = std::ranges::find_if(backups, isMeant);
    if (std::ranges::count_if(backups, isMeant) > 1) {
        return DRCommandOutcome{DRExitCode::Usage, u"There is more than one phone backup of that name."_s,
                                u"name one by its number: phone-migrate phone-backups"_s};
    }
    if (found != backups.end()) {
        return *found;
    }
    if (QFileInfo(argument).isDir()) {
        return inFolder(argument);
    }
    return backups.empty() ? none()
                           : DRCommandOutcome{DRExitCode::NoBackup,
                                              u"No phone backup has the number or name \"%1\", and there is no such "
                                              "folder."_s.arg(withoutControlCharacters(argument)),
                                              u"see which there are: phone-migrate phone-backups"_s};
}

DRCommandOutcome DRPhoneBackupList::none() const
{
    return {DRExitCode::NoBackup, u"No phone backup was found in %1."_s.arg(withoutControlCharacters(root)),
            u"each transfer keeps one before it writes to the phone: phone-migrate transfer"_s};
}
