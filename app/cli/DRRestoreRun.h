#pragma once

#include <functional>
#include <optional>

#include <QElapsedTimer>
#include <QEventLoop>

#include "app/cli/DRRunReporter.h"
#include "model/phone_backup/DRPhoneRestore.h"

class DRInterrupt;
struct DRMigrateServices;

/// Drives the undo from the check of the phone backup to its end, in the event loop.
class DRRestoreRun final : private DRPhoneRestore::Observer {
public:
    DRRestoreRun(const DRMigrateServices& services, DRRunReporter& reporter, DRInterrupt& interrupt);

    /// Reads the plan's packets to their end; the plan tells then which are damaged. None when it was interrupted.
    [[nodiscard]] std::optional<DRPhoneRestorePlan> check(const DRPhoneRestorePlan& plan);

    /// Puts the apps back. `willWrite` is called when the phone is about to be written. None when it was interrupted
    /// before that; later it is finished first.
    [[nodiscard]] std::optional<DRPhoneRestoreResult> run(DRPhoneRestore::Request request,
                                                          std::function<void()> willWrite);

private:
    void phaseChanged(DRPhoneRestore::Phase phase) override;
    void progressed(double fraction) override;
    void ended(const DRPhoneRestoreResult& result) override;
    void onInterrupt();

    const DRMigrateServices& m_services;
    DRRunReporter& m_reporter;
    DRInterrupt& m_interrupt;
    std::function<void()> m_willWrite;
    std::shared_ptr<DRPhoneRestore> m_restore;
    std::optional<DRPhoneRestoreResult> m_result;
    DRPhoneRestore::Phase m_phase = DRPhoneRestore::Phase::BackUp;
    bool m_hasBeenInterrupted = false;
    QElapsedTimer m_sinceStart;
    QEventLoop m_loop;
};
