#pragma once

#include "app/cli/DRCommand.h"
#include "wizard/DRTransferPlan.h"

class DRInterrupt;
struct DRTransferSummary;

/// Moves content of a backup onto the phone, or with --dry-run only says what would be moved. Everything that can
/// refuse comes before the phone is touched, in this order: the backup, the phone, another run, what can be moved, a
/// repeat, space, the person.
class DRTransferCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;

private:
    /// A backup that has been read, a phone that can take it, and what would move.
    struct Prepared {
        DRMigrateIPhoneBackupEntryPointer backup;
        DRDCDevicePointer phone;
        DRTransferPlan plan;
    };

    [[nodiscard]] DRResult<Prepared> prepare(DRInterrupt& interrupt);
    [[nodiscard]] DRTransferPlan::Request request() const;
    [[nodiscard]] DRTransferPlan::Repeats repeats() const;

    [[nodiscard]] DRCommandOutcome consent(const Prepared& prepared, DRInterrupt& interrupt);
    [[nodiscard]] DRCommandOutcome move(const Prepared& prepared, DRInterrupt& interrupt);
    [[nodiscard]] DRCommandOutcome showPlan(const Prepared& prepared);
    DRCommandOutcome showSummary(const DRTransferSummary& summary);
    void clearWorkingFolder();

    bool m_hasSummary = false;
};
