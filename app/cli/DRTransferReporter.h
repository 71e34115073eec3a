#pragma once

#include <functional>

#include "app/cli/DRRunReporter.h"
#include "app/cli/DRTransferRun.h"

/// Tells how a transfer goes: as JSON lines or to a person, or both.
class DRTransferReporter final : public DRTransferObserver {
public:
    /// Called when the phone is about to be written.
    using RestoreHandler = std::function<void()>;

    DRTransferReporter(DRTerminal& terminal, const DRCommandLine& line, RestoreHandler restore);

    void phaseChanged(DRMGSequenceStepTransfer::Phase phase) override;
    void progressed(double fraction, double secondsRemaining) override
    {
        m_reporter.progressed(fraction, secondsRemaining);
    }
    void warned(const QString& message) override { m_reporter.warned(message); }
    void restoreWillBegin() override { m_restore(); }
    void interruptedWhileWriting() override { m_reporter.interruptedWhileWriting(); }
    void willBeAbandoned(const QString& phoneBackup) override;

private:
    DRRunReporter m_reporter;
    RestoreHandler m_restore;
};
