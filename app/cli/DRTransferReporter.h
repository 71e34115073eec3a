#pragma once

#include <functional>

#include <QElapsedTimer>

#include "app/cli/DRProgressPrinter.h"
#include "app/cli/DRTransferRun.h"

/// Tells how a transfer goes: as JSON lines or to a person, or both.
class DRTransferReporter final : public DRTransferObserver {
public:
    /// Called with a data-type key as soon as some of it has reached the phone.
    using DeliveredHandler = std::function<void(const QString&)>;

    DRTransferReporter(DRTerminal& terminal, const DRCommandLine& line, DeliveredHandler delivered);

    void phaseChanged(DRMGSequenceStepTransfer::Phase phase) override;
    void progressed(double fraction, double secondsRemaining) override;
    void warned(const QString& message) override;
    void delivered(const QString& dataTypeKey) override;
    void interruptedWhileWriting() override;
    void willBeAbandoned(const QString& phoneBackup) override;

private:
    void writeLine(const QJsonObject& object);

    DRTerminal& m_terminal;
    DRProgressPrinter m_progress;
    DeliveredHandler m_delivered;
    bool m_isJson;
    QElapsedTimer m_sinceStatus; ///< invalid before the first status line
};
