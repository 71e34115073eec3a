#include "app/cli/DRTransferSummary.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTextTable.h"
#include "model/media/DRMigrateMediaDataType.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRBRBackupRestoreController.h"

#include <QJsonArray>
#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Count = DRTransferSummary::Count;
using Kind = DRTransferSummary::Kind;

bool isRestored(qint64 flags)
{
    return (flags & DRMigrateDataType::kDRMigrateDataTypeFlagRestored) != 0;
}

/// The flag of media says only that their copy has ended, be it without a single file.
bool isDelivered(qint64 flags, const Count& records)
{
    return isRestored(flags) && (records.found == 0 || records.written > 0);
}

bool isDelivered(const Kind& kind)
{
    return isDelivered(kind.flags, kind.records);
}

void addSkipped(Kind& kind, const DRMigrateSkippedItem& item)
{
    // What the reader left out may stand in the writer's report, too.
    if (std::ranges::find(kind.skipped, item) == kind.skipped.end()) {
        kind.skipped.push_back(item);
    }
}

/// One data type carries photos and videos, of which only one kind may have been chosen.
bool isWanted(const DRMigrateSkippedItem& item, const DRMigrateDataType& phoneSide)
{
    const auto* media = dynamic_cast<const DRMigrateMediaDataType*>(&phoneSide);
    return media == nullptr || item.fileKind == 0 || media->fileKindsToTransfer() == 0 ||
           (item.fileKind & media->fileKindsToTransfer()) != 0;
}

Kind kindOf(const DRMigrateDataType& phoneSide, const DRMigrateDataType* iPhoneSide)
{
    const DRMigrateReport report = phoneSide.report();
    const bool isOnPhone = isRestored(phoneSide.flags());
    Kind kind{.flags = phoneSide.flags(),
              .records = {.found = report.found, .written = isOnPhone ? report.written : 0},
              .furtherCounts = {},
              .skipped = report.skipped,
              .warnings = report.warnings,
              .note = {}};
    if (iPhoneSide == nullptr) {
        return kind;
    }
    const DRMigrateReport source = iPhoneSide->report();
    if (!isOnPhone && kind.records.found == 0) { // the run ended before it came to this kind
        kind.records.found = source.found;
    }
    for (const auto& [name, found] : source.counts) {
        const auto written = report.counts.find(name);
        const bool isWritten = isOnPhone && written != report.counts.end();
        kind.furtherCounts[name] = {.found = found, .written = isWritten ? written->second : 0};
    }
    for (const DRMigrateSkippedItem& item : source.skipped) {
        if (isWanted(item, phoneSide)) {
            addSkipped(kind, item);
        }
    }
    kind.warnings = source.warnings + kind.warnings;
    kind.warnings.removeDuplicates();
    return kind;
}

void addPhoneEntry(DRTransferSummary& summary,
                   const DRMigrateBackupEntry& phoneEntry,
                   const DRMigrateIPhoneBackupEntry& backup)
{
    for (const QString& key : phoneEntry.dataTypeKeys()) {
        const auto phoneSide = phoneEntry.dataTypeForKey(key);
        const auto iPhoneSide = backup.dataTypeForKey(phoneSide->sourceKey());
        summary.kinds[key] = kindOf(*phoneSide, iPhoneSide.get());
    }
}

void addUnmoved(DRTransferSummary& summary, const DRTransferPlan& plan)
{
    for (const DRTransferPlan::Unmoved& unmoved : plan.unmoved) {
        Kind& kind = summary.kinds[unmoved.key];
        if (unmoved.weight == DRTransferPlan::Unmoved::Weight::Note) {
            kind.note = unmoved.why;
            continue;
        }
        addSkipped(kind, {DRKinds::nameOfKey(unmoved.key), unmoved.why});
    }
}

/// "notes (com.vornmobile.notes)" for a packet, "photos" for a kind.
QString titleOf(const QString& key)
{
    const QString kind = DRBRBackupRestoreController::dataTypeOfPacket(key);
    return kind.isEmpty() ? DRKinds::nameOfKey(key) : u"%1 (%2)"_s.arg(DRKinds::nameOfKey(kind), key);
}

void addSkippedPackets(DRTransferSummary& summary, const DRTransferRun::Result& result)
{
    for (const DRDCPacketProblem& packet : result.skippedPackets) {
        addSkipped(summary.kinds[packet.packetID], {packet.packetID, packet.reason});
    }
    if (!result.phoneEntry) {
        return;
    }
    const QString why = result.errorState == 0 ? u"it was not written to the phone"_s
                                               : u"the transfer ended before it was written to the phone"_s;
    for (const QString& key : result.phoneEntry->dataTypeKeys()) {
        Kind& kind = summary.kinds[key];
        if (!isRestored(kind.flags) && kind.skipped.empty()) {
            addSkipped(kind, {titleOf(key), why});
        }
    }
}

DRCommandOutcome failure(const DRTransferSummary& summary, const DRTransferRun::Result& result)
{
    static constexpr int kPhonePartlyChanged = 2;
    static constexpr qsizetype kMostNamed = 10;
    QString details = withoutControlCharacters(result.errorDetails.mid(0, kMostNamed).join(u"; "));
    if (result.errorDetails.size() > kMostNamed) {
        details += u"; and %1 more"_s.arg(result.errorDetails.size() - kMostNamed);
    }
    if (details.isEmpty() && result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone) {
        details = u"the phone is no longer connected"_s;
    }
    const QString why = details.isEmpty() ? u"."_s : u": "_s + details + u'.';
    if (result.errorState != kPhonePartlyChanged) {
        const bool isPhoneGone = result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone;
        return {DRExitCode::FailedPhoneUnchanged, u"The transfer failed, nothing was written to the phone"_s + why,
                isPhoneGone
                    ? u"connect the phone again, then type the same again"_s
                    : u"do what helps against that, or leave the kind out with --except; --verbose tells more"_s};
    }
    if (std::ranges::none_of(summary.kinds, [](const auto& entry) { return isDelivered(entry.second); })) {
        return {DRExitCode::FailedPhoneChanged,
                u"The transfer failed while the phone was written; none of its apps was changed"_s + why,
                u"do what helps against that, then type the same again"_s};
    }
    if (result.phoneBackupName.isEmpty()) { // only files were copied
        return {DRExitCode::FailedPhoneChanged,
                u"The transfer failed while files were copied, of which the phone holds a part now"_s + why,
                u"do what helps against that, then type the same with --again; what is on the phone already is not "
                u"doubled"_s};
    }
    return {DRExitCode::FailedPhoneChanged,
            u"The transfer failed while the phone was written, which holds a part now"_s + why,
            u"put the phone's apps back as they were from the phone's backup named above, before you try again"_s};
}

DRCommandOutcome outcomeOf(const DRTransferSummary& summary, const DRTransferRun::Result& result)
{
    if (result.errorState != 0) {
        return failure(summary, result);
    }
    const auto hasSkips = [](const auto& entry) { return !entry.second.skipped.empty(); };
    return {.code = std::ranges::any_of(summary.kinds, hasSkips) ? DRExitCode::DoneWithSkips : DRExitCode::Done,
            .message = {},
            .nextStep = {}};
}

QJsonObject jsonOf(const Count& count)
{
    return {{u"found"_s, count.found}, {u"written"_s, count.written}};
}

QJsonObject jsonOf(const Kind& kind)
{
    QJsonArray skipped;
    for (const DRMigrateSkippedItem& item : kind.skipped) {
        skipped << QJsonObject{{u"what"_s, item.what}, {u"why"_s, item.why}};
    }
    QJsonObject object = jsonOf(kind.records);
    object.insert(u"flags"_s, kind.flags);
    object.insert(u"skipped"_s, skipped);
    object.insert(u"warnings"_s, QJsonArray::fromStringList(kind.warnings));
    if (!kind.furtherCounts.empty()) {
        QJsonObject counts;
        for (const auto& [name, count] : kind.furtherCounts) {
            counts.insert(name, jsonOf(count));
        }
        object.insert(u"counts"_s, counts);
    }
    if (!kind.note.isEmpty()) {
        object.insert(u"note"_s, kind.note);
    }
    return object;
}

QString stateText(const Kind& kind)
{
    return isDelivered(kind) ? u"moved"_s : u"not moved"_s;
}

} // namespace

DRTransferSummary DRTransferSummary::make(const DRTransferPlan& plan,
                                          const DRMigrateIPhoneBackupEntry& backup,
                                          const DRTransferRun::Result& result)
{
    DRTransferSummary summary;
    summary.errorState = result.errorState;
    summary.errorCode = result.errorCode;
    summary.phoneBackupName = result.phoneBackupName;
    summary.phoneBackupPath = result.phoneBackupPath;
    if (result.phoneEntry) {
        addPhoneEntry(summary, *result.phoneEntry, backup);
    }
    addUnmoved(summary, plan);
    addSkippedPackets(summary, result);
    summary.outcome = outcomeOf(summary, result);
    return summary;
}

DRTransferSummary DRTransferSummary::ofRefusal(const DRCommandOutcome& outcome)
{
    DRTransferSummary summary;
    summary.outcome = outcome;
    return summary;
}

QStringList DRTransferSummary::deliveredKeys(const DRTransferPlan& plan, const DRMigrateAndroidBackupEntry& phoneEntry)
{
    QStringList delivered;
    for (const QString& key : phoneEntry.dataTypeKeys()) {
        const auto dataType = phoneEntry.dataTypeForKey(key);
        const DRMigrateReport report = dataType->report();
        if (isDelivered(dataType->flags(), {.found = report.found, .written = report.written})) {
            delivered << dataType->sourceKey();
        }
    }
    QStringList keys = plan.keys();
    keys.removeIf([&delivered](const QString& key) { return !delivered.contains(DRKinds::dataTypeKeyOf(key)); });
    return keys;
}

QString DRTransferSummary::text() const
{
    DRTextTable table({u"Kind"_s, u"Found"_s, u"Moved"_s, u"Skipped"_s, u"Outcome"_s});
    QString skips;
    QMap<QString, QStringList> namesByNote;
    for (const auto& [key, kind] : kinds) {
        const QString name = titleOf(key);
        if (!kind.note.isEmpty()) {
            namesByNote[kind.note] << name;
            continue;
        }
        table.add({name, QString::number(kind.records.found), QString::number(kind.records.written),
                   QString::number(kind.skipped.size()), stateText(kind)});
        for (const auto& [what, count] : kind.furtherCounts) {
            table.add({u"+ "_s + what, QString::number(count.found), QString::number(count.written), {}, {}});
        }
        for (const DRMigrateSkippedItem& item : kind.skipped) {
            skips += u"Skipped (%1): %2: %3\n"_s.arg(name, withoutControlCharacters(item.what),
                                                     withoutControlCharacters(item.why));
        }
        for (const QString& warning : kind.warnings) {
            skips += u"Warning (%1): %2\n"_s.arg(name, withoutControlCharacters(warning));
        }
    }
    for (const auto& [note, names] : namesByNote.asKeyValueRange()) {
        skips += u"Not moved: %1: %2\n"_s.arg(names.join(u", "_s), note);
    }
    const QString backup = phoneBackupPath.isEmpty() ? QString()
                                                     : u"The phone's apps as they were before: \"%1\"\n  in %2\n"_s.arg(
                                                           phoneBackupName, withoutControlCharacters(phoneBackupPath));
    return (kinds.empty() ? QString() : table.text()) + skips + backup;
}

QJsonObject DRTransferSummary::json() const
{
    QJsonObject kindObjects;
    for (const auto& [key, kind] : kinds) {
        kindObjects.insert(key, jsonOf(kind));
    }
    const bool isDone = outcome.code == DRExitCode::Done || outcome.code == DRExitCode::DoneWithSkips;
    const QJsonValue backup = phoneBackupPath.isEmpty()
                                  ? QJsonValue(QJsonValue::Null)
                                  : QJsonValue(QJsonObject{{u"name"_s, phoneBackupName}, {u"path"_s, phoneBackupPath}});
    return {
        {u"type"_s, isDone ? u"summary"_s : u"error"_s},
        {u"code"_s, static_cast<int>(outcome.code)},
        {u"errorState"_s, errorState},
        {u"errorCode"_s, errorCode},
        {u"kinds"_s, kindObjects},
        {u"phoneBackup"_s, backup},
        {u"message"_s, DRJsonOutput::text(outcome.message)},
        {u"nextStep"_s, DRJsonOutput::text(outcome.nextStep)},
    };
}
