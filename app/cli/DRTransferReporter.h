#pragma once

#include <functional>

#include <QElapsedTimer>

#include "app/cli/DRProgressPrinter.h"
#include "app/cli/DRTransferRun.h"

/// Tells how a transfer goes: as JSON lines or to a person, or both.
class DRTransferReporter final : public DRTransferObserver {
public:
    /// Called when the phone is about to be written.
    using RestoreHandler = std::function<void()>;

    DRTransferReporter(DRTerminal& terminal, const DRCommandLine& line, RestoreHandler restore);

    void phaseChanged(DRMGSequenceStepTransfer::Phase phase) override;
    void progressed(double fraction, double secondsRemaining) override;
    void warned(const QString& message) override;
    void restoreWillBegin() override;
    void interruptedWhileWriting() override;
    void willBeAbandoned(const QString& phoneBackup) override;

private:
    void writeLine(const QJsonObject& object);

    DRTerminal& m_terminal;
    DRProgressPrinter m_progress;
    RestoreHandler m_restore;
    bool m_isJson;
    QElapsedTimer m_sinceStatus; ///< invalid before the first status line
};
