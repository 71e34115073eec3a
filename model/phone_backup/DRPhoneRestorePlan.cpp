#include "model/phone_backup/DRPhoneRestorePlan.h"

#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketProblem.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDevice.h"

using namespace Qt::StringLiterals;

namespace {

QString problemOfContent(const QString& packet)
{
    return readPacketHeader(packet) ? u"its content is damaged"_s : packetProblem(packet);
}

} // namespace

DRPhoneRestorePlan DRPhoneRestorePlan::make(const DRPhoneBackup& backup,
                                            const DRDCDevice& phone,
                                            const std::function<bool(const QString&)>& isWanted)
{
    DRPhoneRestorePlan plan;
    plan.backup = backup;
    plan.isOtherPhone = backup.phoneIdentifier != phone.identifier();
    const QStringList offered = phone.backupPackets();
    for (const DRPhoneBackup::App& app : backup.apps) {
        if (!isWanted(app.packetID)) {
            continue;
        }
        if (!app.isThere) {
            plan.skipped.push_back({app.packetID, app.problem});
        } else if (!offered.contains(app.packetID)) {
            plan.skipped.push_back({app.packetID, u"the phone does not have this app any more"_s});
        } else {
            plan.apps.push_back(app);
        }
    }
    return plan;
}

void DRPhoneRestorePlan::check(const std::function<bool()>& isStopped)
{
    damaged.clear();
    fingerprints.clear();
    for (const DRPhoneBackup::App& app : apps) {
        if (isStopped && isStopped()) {
            return;
        }
        const QString packet = backup.pathOfPacket(app.packetID);
        if (auto fingerprint = packetFingerprint(packet)) {
            fingerprints[app.packetID] = std::move(*fingerprint);
        } else {
            damaged.push_back({app.packetID, problemOfContent(packet)});
        }
    }
}

DRPhoneRestorePlan::Obstacle DRPhoneRestorePlan::obstacle() const
{
    using State = DRPhoneBackup::State;
    const State state = backup.state;
    if (state == State::NoDescription || state == State::UnreadableDescription || state == State::Empty) {
        return Obstacle::UnusableBackup;
    }
    if (isOtherPhone) {
        return Obstacle::OtherPhone;
    }
    if (apps.empty()) {
        return Obstacle::NothingToPutBack;
    }
    return damaged.empty() ? Obstacle::None : Obstacle::DamagedPackets;
}

QStringList DRPhoneRestorePlan::packetIDs() const
{
    QStringList packetIDs;
    for (const DRPhoneBackup::App& app : apps) {
        packetIDs << app.packetID;
    }
    return packetIDs;
}

quint64 DRPhoneRestorePlan::sizeBytes() const
{
    quint64 bytes = 0;
    for (const DRPhoneBackup::App& app : apps) {
        bytes += app.sizeBytes;
    }
    return bytes;
}

QStringList DRPhoneRestorePlan::dataTypesWhollyIn(const QStringList& packetIDs) const
{
    QStringList whole;
    QStringList partly;
    for (const DRPhoneBackup::App& app : backup.apps) {
        const QString dataType = DRBRBackupRestoreController::dataTypeOfPacket(app.packetID);
        (packetIDs.contains(app.packetID) ? whole : partly) << dataType;
    }
    whole.removeIf([&partly](const QString& key) { return key.isEmpty() || partly.contains(key); });
    whole.removeDuplicates();
    return whole;
}
