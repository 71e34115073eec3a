#include "app/cli/DRTransferSummaryText.h"

#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRTextTable.h"
#include "app/cli/DRTransferPlanText.h"
#include "platform/core/DRLog.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QJsonArray>
#include <QMap>

using namespace Qt::StringLiterals;

namespace {

using Count = DRTransferSummary::Count;
using Kind = DRTransferSummary::Kind;

/// Whether the kind was not moved without any loss.
bool isNote(const Kind& kind)
{
    return kind.unmoved && kind.unmoved->weight == DRTransferPlan::Unmoved::Weight::Note;
}

/// Every loss of the kind, that of the whole of it included. `hasFailed` tells whether the run ended early.
std::vector<DRMigrateSkippedItem> skippedOf(const QString& key, const Kind& kind, bool hasFailed)
{
    std::vector<DRMigrateSkippedItem> items = kind.skipped;
    if (kind.unmoved && !isNote(kind)) {
        items.push_back({DRKinds::nameOfKey(key), DRTransferPlanText::why(*kind.unmoved)});
    }
    if (kind.isUnwritten) {
        items.push_back(
            {DRKinds::titleOfPacketOrKey(key), hasFailed ? u"the transfer ended before it was written to the phone"_s
                                                         : u"it was not written to the phone"_s});
    }
    return items;
}

DRCommandOutcome failure(const DRTransferSummary& summary)
{
    static constexpr int kPhonePartlyChanged = 2;
    const DRTransferResult& result = summary.result;
    static constexpr qsizetype kMostNamed = 10;
    QString details = withoutControlCharacters(result.errorDetails.mid(0, kMostNamed).join(u"; "));
    if (result.errorDetails.size() > kMostNamed) {
        details += u"; and %1 more"_s.arg(result.errorDetails.size() - kMostNamed);
    }
    if (details.isEmpty() && result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone) {
        details = u"the phone is no longer connected"_s;
    }
    const QString why = details.isEmpty() ? u"."_s : u": "_s + details + u'.';
    const bool isPhoneGone = result.errorCode == DRMGSequenceStepTransfer::kErrorPhoneGone;
    if (result.errorState != kPhonePartlyChanged) {
        return {
            DRExitCode::FailedPhoneUnchanged, u"The transfer failed, nothing was written to the phone"_s + why,
            isPhoneGone
                ? u"connect the phone again, then type the same again"_s
                : u"if a disk is full or went away, mend that and type the same again; else leave the kind out with "
                  "--except; --verbose tells more"_s};
    }
    if (!summary.isPhoneChanged() && !isPhoneGone) { // of one that went away it is not known
        return {DRExitCode::FailedPhoneChanged,
                u"The transfer failed while the phone was written; none of its apps was changed"_s + why,
                u"if a disk is full or went away, mend that; then type the same again; --verbose tells more"_s};
    }
    if (result.phoneBackupName.isEmpty()) { // only files were copied
        return {DRExitCode::FailedPhoneChanged,
                u"The transfer failed while files were copied, of which the phone holds a part now"_s + why,
                u"if the phone is full or went away, mend that; then type the same with --again; what is on the phone "
                "already is not doubled"_s};
    }
    return {DRExitCode::FailedPhoneChanged,
            u"The transfer failed while the phone was written, which holds a part now"_s + why,
            u"put the phone's apps back as they were before you try again: phone-migrate restore '%1'"_s.arg(
                withoutControlCharacters(result.phoneBackupPath))};
}

QJsonObject jsonOf(const Count& count)
{
    return {{u"found"_s, count.found}, {u"written"_s, count.written}};
}

QJsonObject jsonOf(const QString& key, const Kind& kind, bool hasFailed)
{
    QJsonArray skipped;
    for (const DRMigrateSkippedItem& item : skippedOf(key, kind, hasFailed)) {
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
    if (isNote(kind)) {
        object.insert(u"note"_s, DRTransferPlanText::why(*kind.unmoved));
    }
    return object;
}

QString stateText(const Kind& kind)
{
    return kind.isDelivered() ? u"moved"_s : u"not moved"_s;
}

} // namespace

DRCommandOutcome DRTransferSummaryText::outcome(const DRTransferSummary& summary)
{
    if (summary.result.errorState != 0) {
        return failure(summary);
    }
    return {.code = summary.hasLosses() ? DRExitCode::DoneWithSkips : DRExitCode::Done, .message = {}, .nextStep = {}};
}

QString DRTransferSummaryText::text(const DRTransferSummary& summary)
{
    DRTextTable table({u"Kind"_s, u"Found"_s, u"Moved"_s, u"Skipped"_s, u"Outcome"_s});
    QString skips;
    QMap<QString, QStringList> namesByNote;
    const bool hasFailed = summary.result.errorState != 0;
    for (const auto& [key, kind] : summary.kinds) {
        const QString name = DRKinds::titleOfPacketOrKey(key);
        if (isNote(kind)) {
            namesByNote[DRTransferPlanText::why(*kind.unmoved)] << name;
            continue;
        }
        table.add({name, QString::number(kind.records.found), QString::number(kind.records.written),
                   QString::number(kind.lossCount()), stateText(kind)});
        for (const auto& [what, count] : kind.furtherCounts) {
            table.add({u"+ "_s + what, QString::number(count.found), QString::number(count.written), {}, {}});
        }
        for (const DRMigrateSkippedItem& item : skippedOf(key, kind, hasFailed)) {
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
    const QString backup =
        summary.result.phoneBackupPath.isEmpty()
            ? QString()
            : u"The phone's apps as they were before: \"%1\"\n  in %2\n"_s.arg(
                  summary.result.phoneBackupName, withoutControlCharacters(summary.result.phoneBackupPath));
    return (summary.kinds.empty() ? QString() : table.text()) + skips + backup;
}

QJsonObject DRTransferSummaryText::json(const DRTransferSummary& summary, const DRCommandOutcome& outcome)
{
    const DRTransferResult& result = summary.result;
    QJsonObject kindObjects;
    for (const auto& [key, kind] : summary.kinds) {
        kindObjects.insert(key, jsonOf(key, kind, result.errorState != 0));
    }
    const bool isDone = outcome.code == DRExitCode::Done || outcome.code == DRExitCode::DoneWithSkips;
    const QJsonValue backup =
        result.phoneBackupPath.isEmpty()
            ? QJsonValue(QJsonValue::Null)
            : QJsonValue(QJsonObject{{u"name"_s, result.phoneBackupName}, {u"path"_s, result.phoneBackupPath}});
    return {
        {u"type"_s, isDone ? u"summary"_s : u"error"_s},
        {u"code"_s, static_cast<int>(outcome.code)},
        {u"errorState"_s, result.errorState},
        {u"errorCode"_s, result.errorCode},
        {u"kinds"_s, kindObjects},
        {u"phoneBackup"_s, backup},
        {u"message"_s, DRJsonOutput::text(outcome.message)},
        {u"nextStep"_s, DRJsonOutput::text(outcome.nextStep)},
    };
}

QJsonObject DRTransferSummaryText::jsonOfRefusal(const DRCommandOutcome& outcome)
{
    return json({}, outcome);
}
