#include "app/cli/DRTransferPlan.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRSizeText.h"
#include "app/cli/DRTextTable.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCFilesystem.h"

#include <QJsonArray>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {

using Unmoved = DRTransferPlan::Unmoved;

/// Whether this program and this phone have a place for the kind, and which packets it goes into.
struct Place {
    bool exists = false;
    bool isOffered = false; ///< the phone offers packets for it, though this program may know none of them
    QStringList packetIDs;
};

Place placeOf(const QString& key, const DRDCDevicePointer& phone, const DRMigrateServices& services)
{
    const auto probe = std::make_shared<DRMigrateAndroidBackupEntry>(services);
    const QString dataTypeKey = DRKinds::dataTypeKeyOf(key);
    probe->addDataType(dataTypeKey, phone);
    const QStringList offered = services.backupRestoreController.packetIDsForDataType(
        dataTypeKey, phone->backupPackets(), phone->appProductRevision());
    return {
        .exists = !probe->dataTypeKeys().isEmpty(),
        .isOffered = !offered.isEmpty(),
        .packetIDs = probe->packetIDsForAddedDataTypes(),
    };
}

QString whyUnreadable(const QString& key, const QString& why)
{
    if (key == DRMigrateKeys::kMusic) {
        return why; // it lies on this computer, not in the backup
    }
    const QString text = u"it is in the backup, but cannot be read"_s;
    return why.isEmpty() ? text : text + u": "_s + why;
}

QString whyNotReadable(const QString& key, const DRKindContent& content)
{
    switch (content.state) {
    case DRKindContent::State::Loaded:
        break;
    case DRKindContent::State::NotSupported:
        return u"not supported by this version"_s;
    case DRKindContent::State::NotInBackup:
        return u"not in the backup"_s;
    case DRKindContent::State::NotAvailable:
        return u"not available: "_s + content.why;
    case DRKindContent::State::Unreadable:
        return whyUnreadable(key, content.why);
    }
    return {};
}

/// Whether a kind that is not loaded leaves nothing behind that was asked for.
bool isNoLoss(const DRKindContent& content, const DRTransferPlan::Request& request)
{
    const bool isBeyondUs =
        content.state == DRKindContent::State::NotSupported || content.state == DRKindContent::State::NotAvailable;
    return content.state == DRKindContent::State::NotInBackup || (isBeyondUs && !request.isByName);
}

QString notesText(const QStringList& notes)
{
    return notes.isEmpty() ? QString() : notes.join(u'\n') + u'\n';
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
        if (content.state != DRKindContent::State::Loaded) {
            const auto weight = isNoLoss(content, request) ? Unmoved::Weight::Note : Unmoved::Weight::Skipped;
            plan.unmoved.push_back({key, weight, whyNotReadable(key, content)});
            continue;
        }
        const Place place = placeOf(key, phone, services);
        if (!place.exists) {
            const QString why = place.isOffered ? u"this version cannot write to the phone's app for it"_s
                                                : u"the phone has no app for "_s + DRKinds::nameOfKey(key);
            plan.unmoved.push_back({key, Unmoved::Weight::Skipped, why});
            continue;
        }
        plan.kinds.push_back({key, content, place.packetIDs});
    }
    const QStringList keys = plan.keys();
    plan.repeated = ledger.repeatedKinds(keys, backup, phone->identifier());
    plan.otherBackups = ledger.kindsOfOtherBackups(keys, backup, phone->identifier());
    plan.isLedgerDamaged = ledger.isDamaged();
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

DRCommandOutcome DRTransferPlan::refusal(Repeats repeats) const
{
    if (kinds.empty()) {
        QStringList reasons{u"Nothing of what was chosen can go to this phone."_s};
        for (const Unmoved& kind : unmoved) {
            reasons << DRKinds::nameOfKey(kind.key) + u": "_s + kind.why + u'.';
        }
        return {
            DRExitCode::FailedPhoneUnchanged, reasons.join(u'\n'),
            u"see what the backup holds: phone-migrate inspect, and which apps the phone has: phone-migrate phone"_s};
    }
    if (isLedgerDamaged && repeats == Repeats::Refused) {
        return {DRExitCode::FailedPhoneUnchanged,
                u"The record of earlier transfers cannot be read, so it is not known what this phone got before."_s,
                u"to transfer nevertheless, add --again"_s};
    }
    if (!repeated.isEmpty() && repeats == Repeats::Refused) {
        return {DRExitCode::FailedPhoneUnchanged,
                u"This phone got %1 from this backup before; once more would double everything."_s.arg(
                    DRKinds::namesOf(repeated)),
                u"leave them out: --except %1, or double them knowingly: --again"_s.arg(
                    DRKinds::namesOf(repeated).remove(u' '))};
    }
    if (bytesNeeded > bytesFree) {
        return {DRExitCode::NotEnoughSpace,
                u"There is not enough space on the phone: %1 are needed, %2 are free."_s.arg(sizeText(bytesNeeded),
                                                                                             sizeText(bytesFree)),
                u"delete files on the phone, or move less: --except photos,videos,music"_s};
    }
    return {};
}

QStringList DRTransferPlan::notes() const
{
    QStringList notes;
    QMap<QString, QStringList> namesByReason;
    for (const Unmoved& kind : unmoved) {
        namesByReason[kind.why] << DRKinds::nameOfKey(kind.key);
    }
    for (const auto& [why, names] : namesByReason.asKeyValueRange()) {
        notes << u"Not moved: %1: %2"_s.arg(names.join(u", "_s), why);
    }
    if (!otherBackups.isEmpty()) {
        notes
            << u"Warning: this phone got %1 from another backup of this iPhone before; what is in both will be there twice."_s
                   .arg(DRKinds::namesOf(otherBackups));
    }
    return notes;
}

QString DRTransferPlan::text() const
{
    DRTextTable table({u"Kind"_s, u"Count"_s, u"Size"_s, u"Goes to"_s});
    for (const Kind& kind : kinds) {
        table.add({DRKinds::nameOfKey(kind.key), QString::number(kind.content.count),
                   kind.content.isFiles ? sizeText(kind.content.bytes) : QString(),
                   kind.packetIDs.isEmpty() ? u"the phone's storage"_s : kind.packetIDs.join(u", "_s)});
        for (const auto& [name, count] : kind.content.counts) {
            table.add({u"+ "_s + name, QString::number(count), {}, {}});
        }
    }
    return u"%1Needs %2 on the phone, %3 are free.\n%4"_s.arg(
        kinds.empty() ? QString() : table.text(), sizeText(bytesNeeded), sizeText(bytesFree), notesText(notes()));
}

QJsonObject DRTransferPlan::json() const
{
    QJsonObject moved;
    for (const Kind& kind : kinds) {
        moved.insert(kind.key, QJsonObject{{u"count"_s, kind.content.count},
                                           {u"bytes"_s, DRJsonOutput::bytes(kind.content.bytes)},
                                           {u"packets"_s, QJsonArray::fromStringList(kind.packetIDs)}});
    }
    return {
        {u"kinds"_s, moved},
        {u"notes"_s, QJsonArray::fromStringList(notes())},
        {u"repeated"_s, QJsonArray::fromStringList(repeated)},
        {u"bytesNeeded"_s, DRJsonOutput::bytes(bytesNeeded)},
        {u"bytesFree"_s, DRJsonOutput::bytes(bytesFree)},
    };
}
