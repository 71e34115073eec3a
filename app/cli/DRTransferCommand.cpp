#include "app/cli/DRTransferCommand.h"

#include "app/cli/DRBackupChoice.h"
#include "app/cli/DRBackupLoader.h"
#include "app/cli/DRConsent.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRPhoneChoice.h"
#include "app/cli/DRTerminal.h"
#include "app/cli/DRTransferPlanText.h"
#include "app/cli/DRTransferReporter.h"
#include "app/cli/DRTransferRun.h"
#include "app/cli/DRTransferSummaryText.h"
#include "app/cli/DRWorkingFolder.h"
#include "app/DRInterrupt.h"
#include "app/DRMigrateStartup.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRSizeText.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

namespace {

using Ending = DRTransferRun::Result::Ending;

DRCommandOutcome phoneGone()
{
    return {DRExitCode::NoPhone, u"The phone is no longer connected; nothing was written to it."_s,
            u"connect it, then type the same again"_s};
}

/// Why a run did not reach its closing page.
DRCommandOutcome notClosed(const DRTransferRun::Result& result, const DRDCDevice& phone, const DRTransferPlan& plan)
{
    if (result.ending == Ending::Interrupted) {
        return DRConsent::stopped();
    }
    if (result.landedOn == DRMGStepKeys::kPhoneIncompatible) {
        return DRPhoneChoice::compatibility(phone);
    }
    if (result.landedOn == DRMGStepKeys::kMemoryWarning) {
        return {DRExitCode::NotEnoughSpace,
                u"There is not enough space on the phone: %1 are needed."_s.arg(sizeText(plan.bytesNeeded)),
                u"delete files on the phone, or move less: --except photos,videos,music"_s};
    }
    return phoneGone();
}

} // namespace

DRCommandOutcome DRTransferCommand::run()
{
    DRInterrupt interrupt;
    const auto prepared = prepare(interrupt);
    DRCommandOutcome outcome;
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&prepared)) {
        outcome = *refusal;
    }
    if (const auto* ready = std::get_if<Prepared>(&prepared)) {
        outcome = line().dryRun ? showPlan(*ready) : consent(*ready, interrupt);
        if (!line().dryRun && outcome.code == DRExitCode::Done) {
            outcome = move(*ready, interrupt);
        }
    }
    if (line().json && !m_hasSummary) {
        terminal().data(DRJsonOutput::line(DRTransferSummaryText::jsonOfRefusal(outcome)));
    }
    return outcome;
}

DRResult<DRTransferCommand::Prepared> DRTransferCommand::prepare(DRInterrupt& interrupt)
{
    // A dry run leaves no trace, so its temporary files go elsewhere.
    const DRMigrateServices& services = line().dryRun ? startup().scratchServices() : startup().services();
    const auto choice = DRBackupChoice::choose(line().arguments.value(0), startup().backupsFolder(), services);
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return *refusal;
    }
    const auto phoneChoice = DRPhoneChoice::openForWriting(startup());
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&phoneChoice)) {
        return *refusal;
    }
    const auto& phone = std::get<DRDCDevicePointer>(phoneChoice);
    if (!line().dryRun) {
        if (auto refusal = DRWorkingFolder::lock(startup()); refusal.code != DRExitCode::Done) {
            return refusal;
        }
    }
    const auto& backup = std::get<DRMigrateIPhoneBackupEntryPointer>(choice);
    terminal().say(u"Reading %1 …"_s.arg(withoutControlCharacters(backup->backupPath())));
    if (DRBackupLoader::load(*backup, interrupt) == DRBackupLoader::Ending::Interrupted) {
        return DRConsent::stopped();
    }
    const auto ledger = DRTransferLedger::ofFile(startup().ledgerPath());
    return Prepared{backup, phone, DRTransferPlan::make(request(), *backup, phone, services, ledger)};
}

DRTransferPlan::Request DRTransferCommand::request() const
{
    if (!line().only.isEmpty()) {
        return {.keys = DRKinds::fromText(line().only).keys, .isByName = true};
    }
    QStringList keys = DRKinds::allKeys();
    if (!line().except.isEmpty()) {
        const QStringList excluded = DRKinds::fromText(line().except).keys;
        keys.removeIf([&excluded](const QString& key) { return excluded.contains(key); });
    }
    return {.keys = keys, .isByName = false};
}

DRTransferPlan::Repeats DRTransferCommand::repeats() const
{
    return line().again ? DRTransferPlan::Repeats::Allowed : DRTransferPlan::Repeats::Refused;
}

DRCommandOutcome DRTransferCommand::consent(const Prepared& prepared, DRInterrupt& interrupt)
{
    DRCommandOutcome refusal = DRTransferPlanText::refusal(prepared.plan, repeats());
    if (refusal.code != DRExitCode::Done || line().yes) {
        return refusal;
    }
    return DRConsent::ask(
        u"%1Move this from \"%2\" to %3? [y/N] "_s.arg(DRTransferPlanText::text(prepared.plan),
                                                       withoutControlCharacters(prepared.backup->deviceName()),
                                                       withoutControlCharacters(prepared.phone->marketingName())),
        terminal(), interrupt);
}

DRCommandOutcome DRTransferCommand::move(const Prepared& prepared, DRInterrupt& interrupt)
{
    auto ledger = DRTransferLedger::ofFile(startup().ledgerPath());
    bool isRecorded = true;
    // Before the phone is written: what is on it must be known even if this process dies in the middle.
    DRTransferReporter reporter(terminal(), line(), [&] {
        isRecorded = ledger.record(prepared.plan.appKeys(), *prepared.backup, prepared.phone->identifier(),
                                   startup().clock().now());
    });
    for (const QString& note : DRTransferPlanText::notes(prepared.plan)) {
        reporter.warned(note);
    }
    const DRMGContext context = startup().context();
    DRTransferRun run(context, reporter, interrupt);
    const DRTransferRun::Result result = run.run(prepared.backup, prepared.phone, prepared.plan.keys());
    if (result.ending != Ending::Closed) {
        clearWorkingFolder();
        return notClosed(result, *prepared.phone, prepared.plan);
    }
    const QStringList remembered = DRTransferSummary::keysToRemember(prepared.plan, result.transfer);
    isRecorded = ledger.settle(remembered, *prepared.backup, prepared.phone->identifier(), startup().clock().now()) &&
                 isRecorded;
    if (!isRecorded && !remembered.isEmpty()) {
        reporter.warned(u"This transfer could not be noted in %1: another one would double everything. Make sure that "
                        "you may write there and that the disk is not full."_s.arg(startup().ledgerPath()));
    }
    const auto summary = DRTransferSummary::make(prepared.plan, *prepared.backup, result.transfer);
    if (result.transfer.errorState == 0) {
        clearWorkingFolder();
    }
    return showSummary(summary);
}

DRCommandOutcome DRTransferCommand::showPlan(const Prepared& prepared)
{
    m_hasSummary = true;
    const DRCommandOutcome refusal = DRTransferPlanText::refusal(prepared.plan, repeats());
    const bool isRefused = refusal.code != DRExitCode::Done;
    if (line().json) {
        QJsonObject plan = DRTransferPlanText::json(prepared.plan);
        plan.insert(u"type"_s, u"plan"_s);
        plan.insert(u"refusal"_s, isRefused ? QJsonValue(QJsonObject{{u"code"_s, static_cast<int>(refusal.code)},
                                                                     {u"message"_s, refusal.message}})
                                            : QJsonValue(QJsonValue::Null));
        terminal().data(DRJsonOutput::line(plan));
        QJsonObject last = DRTransferSummaryText::jsonOfRefusal({});
        last.insert(u"dryRun"_s, true);
        terminal().data(DRJsonOutput::line(last));
        return {};
    }
    terminal().data(DRTransferPlanText::text(prepared.plan));
    terminal().data(isRefused ? u"A transfer would be refused: %1\nNext: %2\n"_s.arg(refusal.message, refusal.nextStep)
                              : u"Nothing was changed. To move this, type the same without --dry-run.\n"_s);
    return {};
}

DRCommandOutcome DRTransferCommand::showSummary(const DRTransferSummary& summary)
{
    m_hasSummary = true;
    DRCommandOutcome outcome = DRTransferSummaryText::outcome(summary);
    if (line().json) {
        terminal().data(DRJsonOutput::line(DRTransferSummaryText::json(summary, outcome)));
        return outcome;
    }
    if (!terminal().isQuiet() || outcome.code != DRExitCode::Done) {
        terminal().say(outcome.code == DRExitCode::Done ? u"The transfer is complete."_s
                                                        : u"The transfer has ended."_s);
        terminal().data(DRTransferSummaryText::text(summary));
    }
    return outcome;
}

void DRTransferCommand::clearWorkingFolder()
{
    if (line().keepWork) {
        terminal().say(u"The working folder was kept: "_s +
                       DRMigrateUtils::pathToInflateFolder(startup().folders().temporary));
        return;
    }
    DRWorkingFolder::clear(startup(), terminal());
}
