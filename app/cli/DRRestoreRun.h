#pragma once

#include <optional>

#include <QElapsedTimer>
#include <QEventLoop>

#include "app/cli/DRRunReporter.h"
#include "wizard/DRPhoneUndo.h"

class DRInterrupt;

/// Drives the undo from the check of the phone backup to its end, in the event loop.
class DRRestoreRun final : private DRPhoneRestore::Observer {
public:
    DRRestoreRun(DRPhoneUndo::Setup setup, DRRunReporter& reporter, DRInterrupt& interrupt);

    /// Reads the plan's packets to their end; the plan tells then which are damaged. None when it was interrupted.
    [[nodiscard]] std::optional<DRPhoneRestorePlan> check(const DRPhoneRestorePlan& plan);

    /// Puts the apps of a checked plan back. None when it was interrupted before the phone was written; later it is
    /// finished first.
    [[nodiscard]] std::optional<DRPhoneRestoreResult> run(const DRDCDevicePointer& phone,
                                                          const DRPhoneRestorePlan& plan);

    /// What came of it beside the phone.
    [[nodiscard]] const DRPhoneUndo& undo() const { return m_undo; }

private:
    void phaseChanged(DRPhoneRestore::Phase phase) override;
    void progressed(double fraction) override;
    void ended(const DRPhoneRestoreResult& result) override;
    void onInterrupt();

    DRRunReporter& m_reporter;
    DRInterrupt& m_interrupt;
    DRPhoneUndo m_undo;
    std::optional<DRPhoneRestoreResult> m_result;
    DRPhoneRestore::Phase m_phase = DRPhoneRestore::Phase::BackUp;
    bool m_hasBeenInterrupted = false;
    QElapsedTimer m_sinceStart;
    QEventLoop m_loop;
};
