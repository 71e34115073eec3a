#include "model/phone_backup/DRPhoneBackup.h"

#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketProblem.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRPropertyList.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRPacketOrder.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

const QString kDescriptionFile = u"/BackupData.plist"_s;

/// The apps that a description names; none when it names none, or one as no app can be called.
std::optional<QStringList> packetIDsOf(const QVariantMap& description)
{
    const QVariant packets = description.value(u"Packets"_s);
    if (packets.typeId() != QMetaType::QVariantList) {
        return std::nullopt;
    }
    QStringList packetIDs;
    for (const QVariant& packet : packets.toList()) {
        if (!DRBRBackupRestoreController::isPacketID(packet.toString())) {
            return std::nullopt; // it would lead out of the folder
        }
        packetIDs << packet.toString();
    }
    return packetIDs;
}

DRPhoneBackup::App appIn(const QString& packetID, const QString& packet)
{
    if (!DRFiles::isRegularFile(packet)) {
        return {.packetID = packetID, .sizeBytes = 0, .isThere = false, .problem = u"its data are not in the backup"_s};
    }
    return {.packetID = packetID,
            .sizeBytes = static_cast<quint64>(QFileInfo(packet).size()),
            .isThere = true,
            .problem = readPacketHeader(packet) ? QString() : packetProblem(packet)};
}

DRPhoneBackup::State stateOf(const std::vector<DRPhoneBackup::App>& apps)
{
    using State = DRPhoneBackup::State;
    if (std::ranges::none_of(apps, &DRPhoneBackup::App::isThere)) {
        return State::Empty;
    }
    if (std::ranges::any_of(apps, [](const auto& app) { return app.isThere && !app.problem.isNull(); })) {
        return State::Damaged;
    }
    return std::ranges::all_of(apps, &DRPhoneBackup::App::isThere) ? State::Whole : State::Incomplete;
}

bool isNewer(const DRPhoneBackup& first, const DRPhoneBackup& second)
{
    // An invalid date is the oldest; of one second, folders are numbered in the order in which they were made.
    return std::tie(first.date, first.path) > std::tie(second.date, second.path);
}

} // namespace

DRPhoneBackup DRPhoneBackup::ofFolder(const QString& folder)
{
    DRPhoneBackup backup;
    backup.path = folder;
    backup.state = QFileInfo::exists(folder + kDescriptionFile) ? State::UnreadableDescription : State::NoDescription;
    const auto description = DRPropertyList::readDictionary(folder + kDescriptionFile);
    if (!description) {
        return backup;
    }
    backup.name = description->value(u"BackupName"_s).toString();
    backup.date = description->value(u"BackupDate"_s).toDateTime();
    backup.phoneName = description->value(u"DeviceName"_s).toString();
    backup.phoneIdentifier = description->value(u"DeviceIdentifier"_s).toString();
    const auto packetIDs = packetIDsOf(*description);
    if (!packetIDs || !backup.date.isValid() || backup.phoneIdentifier.isEmpty()) {
        return backup;
    }
    const QStringList sortOrder = DRBRBackupRestoreController(QString()).dataTypesDefaultSortOrder();
    for (const DRPacketPosition& position : packetsInOrder(*packetIDs, sortOrder)) {
        backup.apps.push_back(appIn(position.packetID, backup.pathOfPacket(position.packetID)));
    }
    backup.state = stateOf(backup.apps);
    return backup;
}

std::vector<DRPhoneBackup> DRPhoneBackup::allBelow(const QString& phoneBackupsFolder)
{
    std::vector<DRPhoneBackup> backups;
    const auto folders = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot;
    for (const QFileInfo& phone : QDir(phoneBackupsFolder).entryInfoList(folders)) {
        for (const QFileInfo& folder : QDir(phone.filePath()).entryInfoList(folders)) {
            backups.push_back(ofFolder(folder.filePath()));
        }
    }
    std::ranges::sort(backups, isNewer);
    return backups;
}

QString DRPhoneBackup::problem() const
{
    switch (state) {
    case State::Whole:
        return {};
    case State::NoDescription:
        return u"its description (BackupData.plist) is missing"_s;
    case State::UnreadableDescription:
        return u"its description (BackupData.plist) cannot be read"_s;
    case State::Empty:
        return u"it holds no app's data"_s;
    case State::Incomplete:
    case State::Damaged:
        break;
    }
    QStringList problems;
    for (const App& app : apps) {
        if (!app.problem.isNull()) {
            problems << app.packetID + u": "_s + app.problem;
        }
    }
    return problems.join(u"; ");
}

bool DRPhoneBackup::isUsable() const
{
    return state == State::Whole || state == State::Incomplete;
}

quint64 DRPhoneBackup::sizeBytes() const
{
    quint64 bytes = 0;
    for (const App& app : apps) {
        bytes += app.sizeBytes;
    }
    return bytes;
}

QString DRPhoneBackup::pathOfPacket(const QString& folder, const QString& packetID)
{
    return folder + u'/' + packetID + u"/fullbackupdata"_s;
}
