#include "wizard/DRTransferSummary.h"

#include "model/media/DRMigrateMediaDataType.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <algorithm>

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
              .sourceKey = phoneSide.sourceKey(),
              .records = {.found = report.found, .written = isOnPhone ? report.written : 0},
              .furtherCounts = {},
              .skipped = report.skipped,
              .warnings = report.warnings,
              .unmoved = std::nullopt};
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

void addSkippedPackets(DRTransferSummary& summary)
{
    for (const DRDCPacketProblem& packet : summary.result.skippedPackets) {
        Kind& kind = summary.kinds[packet.packetID];
        if (!kind.unmoved) { // else the plan has told why
            addSkipped(kind, {packet.packetID, packet.reason});
        }
    }
}

void findUnwritten(DRTransferSummary& summary)
{
    const auto& phoneEntry = summary.result.phoneEntry;
    if (!phoneEntry) {
        return;
    }
    for (const QString& key : phoneEntry->dataTypeKeys()) {
        Kind& kind = summary.kinds[key];
        kind.isUnwritten = !isRestored(kind.flags) && kind.lossCount() == 0;
    }
}

} // namespace

bool DRTransferSummary::Kind::isDelivered() const
{
    return ::isDelivered(flags, records);
}

std::size_t DRTransferSummary::Kind::lossCount() const
{
    const bool isWholeLost = unmoved && unmoved->weight == DRTransferPlan::Unmoved::Weight::Skipped;
    return skipped.size() + (isWholeLost ? 1 : 0) + (isUnwritten ? 1 : 0);
}

DRTransferSummary DRTransferSummary::make(const DRTransferPlan& plan,
                                          const DRMigrateIPhoneBackupEntry& backup,
                                          const DRTransferResult& result)
{
    DRTransferSummary summary{.kinds = {}, .result = result};
    if (result.phoneEntry) {
        addPhoneEntry(summary, *result.phoneEntry, backup);
    }
    for (const DRTransferPlan::Unmoved& unmoved : plan.unmoved) {
        summary.kinds[unmoved.key].unmoved = unmoved;
    }
    addSkippedPackets(summary);
    findUnwritten(summary);
    return summary;
}

bool DRTransferSummary::hasLosses() const
{
    return std::ranges::any_of(kinds, [](const auto& entry) { return entry.second.lossCount() != 0; });
}

bool DRTransferSummary::isPhoneChanged() const
{
    return std::ranges::any_of(kinds, [](const auto& entry) {
        const auto& [key, kind] = entry;
        const bool isApp = !DRBRBackupRestoreController::dataTypeOfPacket(key).isEmpty();
        return kind.isDelivered() || (isApp && isRestored(kind.flags));
    });
}

QStringList DRTransferSummary::keysToRemember(const DRTransferPlan& plan, const DRTransferResult& result)
{
    QStringList remembered;
    for (const QString& key : result.phoneEntry ? result.phoneEntry->dataTypeKeys() : QStringList()) {
        const auto dataType = result.phoneEntry->dataTypeForKey(key);
        const DRMigrateReport report = dataType->report();
        const Count records{.found = report.found, .written = report.written};
        const bool isWhole = dynamic_cast<const DRMigrateMediaDataType*>(dataType.get()) == nullptr ||
                             result.errorState == 0 || records.written == records.found;
        if (::isDelivered(dataType->flags(), records) && isWhole) {
            remembered << dataType->sourceKey();
        }
    }
    const bool isUnknown = result.errorState == static_cast<int>(DRMGSequenceStepComplete::ErrorState::RestoreFailed) &&
                           result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone;
    const QStringList appKeys = isUnknown ? plan.appKeys() : QStringList();
    QStringList keys = plan.keys();
    keys.removeIf([&](const QString& key) {
        return !appKeys.contains(key) && !remembered.contains(DRKindContent::dataTypeKeyOf(key));
    });
    return keys;
}
