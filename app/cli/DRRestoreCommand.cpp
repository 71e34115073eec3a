#include "app/cli/DRRestoreCommand.h"

#include "app/cli/DRConsent.h"
#include "app/cli/DRJsonOutput.h"
#include "app/cli/DRKinds.h"
#include "app/cli/DRPhoneBackupList.h"
#include "app/cli/DRPhoneChoice.h"
#include "app/cli/DRRestoreRun.h"
#include "app/cli/DRRestoreText.h"
#include "app/cli/DRTerminal.h"
#include "app/cli/DRWorkingFolder.h"
#include "app/DRInterrupt.h"
#include "app/DRMigrateStartup.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRBRBackupRestoreController.h"

using namespace Qt::StringLiterals;

DRCommandOutcome DRRestoreCommand::run()
{
    DRInterrupt interrupt;
    DRCommandOutcome outcome = restore(interrupt);
    if (line().json && !m_hasSummary) {
        terminal().data(DRJsonOutput::line(DRRestoreText::jsonOfRefusal(outcome)));
    }
    return outcome;
}

DRCommandOutcome DRRestoreCommand::restore(DRInterrupt& interrupt)
{
    auto choice = prepare();
    if (auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return *refusal;
    }
    auto& prepared = std::get<Prepared>(choice);
    DRRunReporter reporter(terminal(), line());
    DRRestoreRun run(undoSetup(), reporter, interrupt);
    if (auto refusal = check(prepared, run); refusal.code != DRExitCode::Done) {
        return refusal;
    }
    if (line().dryRun) {
        showPlan(prepared.plan);
        return {};
    }
    if (auto refusal = consent(prepared, interrupt); refusal.code != DRExitCode::Done) {
        return refusal;
    }
    return putBack(prepared, run, reporter);
}

DRResult<DRRestoreCommand::Prepared> DRRestoreCommand::prepare()
{
    const auto list = DRPhoneBackupList::ofFolder(startup().phoneBackupsFolder());
    const auto choice = list.choose(line().arguments.front());
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&choice)) {
        return *refusal;
    }
    const auto phoneChoice = DRPhoneChoice::openForWriting(startup());
    if (const auto* refusal = std::get_if<DRCommandOutcome>(&phoneChoice)) {
        return *refusal;
    }
    const auto& phone = std::get<DRDCDevicePointer>(phoneChoice);
    const auto isMeant = [this](const QString& packetID) { return isWanted(packetID); };
    auto plan = DRPhoneRestorePlan::make(std::get<DRPhoneBackup>(choice), *phone, isMeant);
    if (auto refusal = DRRestoreText::refusal(plan); refusal.code != DRExitCode::Done) {
        return refusal;
    }
    if (!line().dryRun) {
        if (auto refusal = DRWorkingFolder::lock(startup()); refusal.code != DRExitCode::Done) {
            return refusal;
        }
    }
    return Prepared{phone, std::move(plan)};
}

bool DRRestoreCommand::isWanted(const QString& packetID) const
{
    const QString kind = DRBRBackupRestoreController::dataTypeOfPacket(packetID);
    if (!line().only.isEmpty()) {
        return DRKinds::fromText(line().only).keys.contains(kind);
    }
    return line().except.isEmpty() || !DRKinds::fromText(line().except).keys.contains(kind);
}

DRCommandOutcome DRRestoreCommand::check(Prepared& prepared, DRRestoreRun& run)
{
    auto checked = run.check(prepared.plan);
    if (!checked) {
        return DRConsent::stopped();
    }
    prepared.plan = std::move(*checked);
    return DRRestoreText::refusal(prepared.plan);
}

DRCommandOutcome DRRestoreCommand::consent(const Prepared& prepared, DRInterrupt& interrupt)
{
    if (line().yes) {
        return {};
    }
    return DRConsent::ask(
        u"%1Put these apps of %2 back? [y/N] "_s.arg(DRRestoreText::text(prepared.plan),
                                                     withoutControlCharacters(prepared.phone->marketingName())),
        terminal(), interrupt);
}

DRPhoneUndo::Setup DRRestoreCommand::undoSetup()
{
    return {.services = startup().services(),
            .ledgerPath = startup().ledgerPath(),
            .applicationVersion = QStringLiteral(MIGRATE_VERSION),
            .filesAreLeft = [this] { DRWorkingFolder::warnOfLeftFiles(startup(), terminal()); }};
}

DRCommandOutcome DRRestoreCommand::putBack(const Prepared& prepared, DRRestoreRun& run, DRRunReporter& reporter)
{
    const auto result = run.run(prepared.phone, prepared.plan);
    if (!result) {
        return DRConsent::stopped();
    }
    if (!run.undo().isNoted()) {
        reporter.warned(
            u"This could not be noted in %1: what a transfer says of kinds that the phone got before may be "
            "wrong. Make sure that you may write there and that the disk is not full."_s.arg(startup().ledgerPath()));
    }
    return showSummary(prepared.plan, *result, run.undo().keptName());
}

void DRRestoreCommand::showPlan(const DRPhoneRestorePlan& plan)
{
    if (line().json) {
        QJsonObject object = DRRestoreText::json(plan);
        object.insert(u"type"_s, u"plan"_s);
        terminal().data(DRJsonOutput::line(object));
        QJsonObject last = DRRestoreText::jsonOfRefusal({});
        last.insert(u"dryRun"_s, true);
        terminal().data(DRJsonOutput::line(last));
        m_hasSummary = true;
        return;
    }
    terminal().data(DRRestoreText::text(plan));
    terminal().data(u"Nothing was changed. To put this back, type the same without --dry-run.\n"_s);
}

DRCommandOutcome DRRestoreCommand::showSummary(const DRPhoneRestorePlan& plan,
                                               const DRPhoneRestoreResult& result,
                                               const QString& keptName)
{
    using Ending = DRPhoneRestoreResult::Ending;
    m_hasSummary = true;
    DRCommandOutcome outcome = DRRestoreText::outcome(plan, result);
    if (line().json) {
        terminal().data(DRJsonOutput::line(DRRestoreText::json(plan, result, keptName, outcome)));
        return outcome;
    }
    const bool isWritten = result.ending == Ending::PutBack || result.ending == Ending::Failed;
    if (isWritten && (!terminal().isQuiet() || outcome.code != DRExitCode::Done)) {
        terminal().say(result.ending == Ending::PutBack ? u"The phone's apps are put back and verified."_s
                                                        : u"The restore has ended."_s);
        terminal().data(DRRestoreText::text(plan, result, keptName));
    }
    return outcome;
}
