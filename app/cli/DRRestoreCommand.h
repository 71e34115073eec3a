#pragma once

#include "app/cli/DRCommand.h"
#include "wizard/DRPhoneUndo.h"

class DRInterrupt;
class DRRestoreRun;
class DRRunReporter;

/// Puts a phone's apps back to what a phone backup holds, or with --dry-run only says what would be put back. Everything
/// that can refuse comes before the phone is written, in this order: the phone backup, the phone, whether they belong
/// together, another run, damage, the person, a backup of the phone's present state, space.
class DRRestoreCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;

private:
    /// A phone, and a checked plan for it without an obstacle.
    struct Prepared {
        DRDCDevicePointer phone;
        DRPhoneRestorePlan plan;
    };

    [[nodiscard]] DRCommandOutcome restore(DRInterrupt& interrupt);
    [[nodiscard]] DRResult<Prepared> prepare();
    [[nodiscard]] DRCommandOutcome check(Prepared& prepared, DRRestoreRun& run);
    [[nodiscard]] bool isWanted(const QString& packetID) const;
    [[nodiscard]] DRCommandOutcome consent(const Prepared& prepared, DRInterrupt& interrupt);
    [[nodiscard]] DRCommandOutcome putBack(const Prepared& prepared, DRRestoreRun& run, DRRunReporter& reporter);
    [[nodiscard]] DRPhoneUndo::Setup undoSetup();
    void showPlan(const DRPhoneRestorePlan& plan);
    DRCommandOutcome
    showSummary(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result, const QString& keptName);

    bool m_hasSummary = false;
};
