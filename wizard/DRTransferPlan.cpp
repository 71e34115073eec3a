#include "wizard/DRTransferPlan.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCFilesystem.h"

#include <optional>

namespace {

using Unmoved = DRTransferPlan::Unmoved;
using Reason = Unmoved::Reason;

/// Whether this program and this phone have a place for the kind, and which packets it goes into.
struct Place {
    bool exists = false;
    bool isOffered = false; ///< the phone offers packets for it, though this program may know none of them
    QStringList packetIDs;
};

Place placeOf(const QString& key, const DRDCDevicePointer& phone, const DRMigrateServices& services)
{
    const auto probe = std::make_shared<DRMigrateAndroidBackupEntry>(services);
    const QString dataTypeKey = DRKindContent::dataTypeKeyOf(key);
    probe->addDataType(dataTypeKey, phone);
    const QStringList offered = services.backupRestoreController.packetIDsForDataType(
        dataTypeKey, phone->backupPackets(), phone->appProductRevision());
    return {
        .exists = !probe->dataTypeKeys().isEmpty(),
        .isOffered = !offered.isEmpty(),
        .packetIDs = probe->packetIDsForAddedDataTypes(),
    };
}

/// None for what is there to be moved.
std::optional<Reason> whyNotReadable(DRKindContent::State state)
{
    switch (state) {
    case DRKindContent::State::Loaded:
        break;
    case DRKindContent::State::NotSupported:
        return Reason::NotSupported;
    case DRKindContent::State::NotInBackup:
        return Reason::NotInBackup;
    case DRKindContent::State::NotAvailable:
        return Reason::NotAvailable;
    case DRKindContent::State::Loading: // nothing of it is known yet
    case DRKindContent::State::Unreadable:
        return Reason::Unreadable;
    }
    return std::nullopt;
}

/// Whether a kind that is not loaded leaves nothing behind that was asked for.
bool isNoLoss(Reason reason, const DRTransferPlan::Request& request)
{
    const bool isBeyondUs = reason == Reason::NotSupported || reason == Reason::NotAvailable;
    return reason == Reason::NotInBackup || (isBeyondUs && !request.isByName);
}

} // namespace

DRTransferPlan DRTransferPlan::make(const Request& request,
                                    const DRMigrateIPhoneBackupEntry& backup,
                                    const DRDCDevicePointer& phone,
                                    const DRMigrateServices& services,
                                    const DRTransferLedger& ledger)
{
    DRTransferPlan plan;
    for (const QString& key : request.keys) {
        const DRKindContent content = DRKindContent::of(key, backup);
        if (const auto reason = whyNotReadable(content.state)) {
            const auto weight = isNoLoss(*reason, request) ? Unmoved::Weight::Note : Unmoved::Weight::Skipped;
            plan.unmoved.push_back({key, weight, *reason, content.why});
            continue;
        }
        const Place place = placeOf(key, phone, services);
        if (!place.exists) {
            plan.unmoved.push_back(
                {key, Unmoved::Weight::Skipped, place.isOffered ? Reason::AppNotSupported : Reason::NoApp, {}});
            continue;
        }
        plan.kinds.push_back({key, content, place.packetIDs});
    }
    const QStringList keys = plan.keys();
    plan.repeated = ledger.repeatedKinds(keys, backup, phone->identifier());
    plan.otherBackups = ledger.kindsOfOtherBackups(keys, backup, phone->identifier());
    plan.damagedLedger = ledger.isDamaged() ? ledger.path() : QString();
    plan.bytesNeeded = backup.bytesNeededForSelectedTypes(keys);
    plan.bytesFree = phone->preferredFilesystem().memoryFreeBytes();
    return plan;
}

QStringList DRTransferPlan::keys() const
{
    QStringList keys;
    for (const Kind& kind : kinds) {
        keys << kind.key;
    }
    return keys;
}

QStringList DRTransferPlan::appKeys() const
{
    QStringList keys;
    for (const Kind& kind : kinds) {
        if (!kind.packetIDs.isEmpty()) {
            keys << kind.key;
        }
    }
    return keys;
}

DRTransferPlan::Obstacle DRTransferPlan::obstacle(Repeats repeats) const
{
    if (kinds.empty()) {
        return Obstacle::NothingMoves;
    }
    if (!damagedLedger.isNull() && repeats == Repeats::Refused) {
        return Obstacle::LedgerDamaged;
    }
    if (!repeated.isEmpty() && repeats == Repeats::Refused) {
        return Obstacle::Repeated;
    }
    return bytesNeeded > bytesFree ? Obstacle::NotEnoughSpace : Obstacle::None;
}
