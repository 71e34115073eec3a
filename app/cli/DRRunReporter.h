#pragma once

#include <QElapsedTimer>
#include <QJsonObject>

#include "app/cli/DRCommandOutcome.h"
#include "app/cli/DRProgressPrinter.h"

/// Tells how a run goes that writes to the phone: as JSON lines, or to a person, or both.
class DRRunReporter {
public:
    DRRunReporter(DRTerminal& terminal, const DRCommandLine& line);

    /// A new phase begins: its title for people, none when it has nothing to show, and what its JSON line says of it.
    void phaseChanged(const QString& title, QJsonObject line);

    void progressed(double fraction, double secondsRemaining);
    void warned(const QString& message);

    /// Ctrl-C was pressed while the phone is written, and the run goes on.
    void interruptedWhileWriting();

    /// How a run ends in which it was pressed again. `phoneBackup` is the folder of the phone's backup, empty when there
    /// is none.
    [[nodiscard]] static DRCommandOutcome abandoned(const QString& phoneBackup);

    /// Writes a JSON line if such are wanted.
    void writeLine(const QJsonObject& line);

    /// Tells a person how the run ended.
    void tell(const DRCommandOutcome& outcome);

private:
    DRTerminal& m_terminal;
    DRProgressPrinter m_progress;
    bool m_isJson;
    QElapsedTimer m_sinceStatus; ///< invalid before the first status line
};
