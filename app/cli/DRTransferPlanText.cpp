#include "app/cli/DRTransferPlanText.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTextTable.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"

#include <QJsonArray>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {

using Obstacle = DRTransferPlan::Obstacle;
using Unmoved = DRTransferPlan::Unmoved;

QString notesText(const QStringList& notes)
{
    return notes.isEmpty() ? QString() : notes.join(u'\n') + u'\n';
}

DRCommandOutcome nothingMoves(const DRTransferPlan& plan)
{
    QStringList reasons{u"Nothing of what was chosen can go to this phone."_s};
    for (const Unmoved& kind : plan.unmoved) {
        reasons << DRKinds::nameOfKey(kind.key) + u": "_s + DRTransferPlanText::why(kind) + u'.';
    }
    return {DRExitCode::FailedPhoneUnchanged, reasons.join(u'\n'),
            u"see what the backup holds: phone-migrate inspect, and which apps the phone has: phone-migrate phone"_s};
}

QString whyUnreadable(const Unmoved& kind)
{
    if (kind.key == DRMigrateKeys::kMusic) {
        return kind.detail; // it lies on this computer, not in the backup
    }
    const QString text = u"it is in the backup, but cannot be read"_s;
    return kind.detail.isEmpty() ? text : text + u": "_s + kind.detail;
}

} // namespace

QString DRTransferPlanText::why(const Unmoved& kind)
{
    switch (kind.reason) {
    case Unmoved::Reason::NotSupported:
        return u"not supported by this version"_s;
    case Unmoved::Reason::NotInBackup:
        return u"not in the backup"_s;
    case Unmoved::Reason::NotAvailable:
        return u"not available: "_s + kind.detail;
    case Unmoved::Reason::Unreadable:
        return whyUnreadable(kind);
    case Unmoved::Reason::NoApp:
        return u"the phone has no app for "_s + DRKinds::nameOfKey(kind.key);
    case Unmoved::Reason::AppNotSupported:
        return u"this version cannot write to the phone's app for it"_s;
    }
    return {};
}

DRCommandOutcome DRTransferPlanText::refusal(const DRTransferPlan& plan, DRTransferPlan::Repeats repeats)
{
    switch (plan.obstacle(repeats)) {
    case Obstacle::None:
        break;
    case Obstacle::NothingMoves:
        return nothingMoves(plan);
    case Obstacle::LedgerDamaged:
        return {
            DRExitCode::FailedPhoneUnchanged,
            u"The record of earlier transfers in %1 cannot be read, so it is not known what this phone got before."_s
                .arg(withoutControlCharacters(plan.damagedLedger)),
            u"make it readable, or transfer nevertheless: --again"_s};
    case Obstacle::Repeated:
        return {DRExitCode::FailedPhoneUnchanged,
                u"This phone got %1 from this backup before; once more would double everything."_s.arg(
                    DRKinds::namesOf(plan.repeated)),
                u"leave them out: --except %1, or double them knowingly: --again"_s.arg(
                    DRKinds::namesOf(plan.repeated).remove(u' '))};
    case Obstacle::NotEnoughSpace:
        return {DRExitCode::NotEnoughSpace,
                u"There is not enough space on the phone: %1 are needed, %2 are free."_s.arg(sizeText(plan.bytesNeeded),
                                                                                             sizeText(plan.bytesFree)),
                u"delete files on the phone, or move less: --except photos,videos,music"_s};
    }
    return {};
}

QStringList DRTransferPlanText::notes(const DRTransferPlan& plan)
{
    QStringList notes;
    QMap<QString, QStringList> namesByReason;
    for (const DRTransferPlan::Unmoved& kind : plan.unmoved) {
        namesByReason[why(kind)] << DRKinds::nameOfKey(kind.key);
    }
    for (const auto& [reason, names] : namesByReason.asKeyValueRange()) {
        notes << u"Not moved: %1: %2"_s.arg(names.join(u", "_s), reason);
    }
    if (!plan.otherBackups.isEmpty()) {
        notes
            << u"Warning: this phone got %1 from another backup of this iPhone before; what is in both will be there twice."_s
                   .arg(DRKinds::namesOf(plan.otherBackups));
    }
    return notes;
}

QString DRTransferPlanText::text(const DRTransferPlan& plan)
{
    DRTextTable table({u"Kind"_s, u"Count"_s, u"Size"_s, u"Goes to"_s});
    for (const DRTransferPlan::Kind& kind : plan.kinds) {
        table.add({DRKinds::nameOfKey(kind.key), QString::number(kind.content.count),
                   kind.content.isFiles ? sizeText(kind.content.bytes) : QString(),
                   kind.packetIDs.isEmpty() ? u"the phone's storage"_s : kind.packetIDs.join(u", "_s)});
        for (const auto& [name, count] : kind.content.counts) {
            table.add({u"+ "_s + name, QString::number(count), {}, {}});
        }
    }
    return u"%1Needs %2 on the phone, %3 are free.\n%4"_s.arg(plan.kinds.empty() ? QString() : table.text(),
                                                              sizeText(plan.bytesNeeded), sizeText(plan.bytesFree),
                                                              notesText(notes(plan)));
}

QJsonObject DRTransferPlanText::json(const DRTransferPlan& plan)
{
    QJsonObject moved;
    for (const DRTransferPlan::Kind& kind : plan.kinds) {
        moved.insert(kind.key, QJsonObject{{u"count"_s, kind.content.count},
                                           {u"bytes"_s, DRJsonOutput::bytes(kind.content.bytes)},
                                           {u"packets"_s, QJsonArray::fromStringList(kind.packetIDs)}});
    }
    return {
        {u"kinds"_s, moved},
        {u"notes"_s, QJsonArray::fromStringList(notes(plan))},
        {u"repeated"_s, QJsonArray::fromStringList(plan.repeated)},
        {u"bytesNeeded"_s, DRJsonOutput::bytes(plan.bytesNeeded)},
        {u"bytesFree"_s, DRJsonOutput::bytes(plan.bytesFree)},
    };
}
