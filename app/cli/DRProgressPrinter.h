#pragma once

#include <QElapsedTimer>
#include <QString>

#include "app/cli/DRCommandLine.h"

class DRTerminal;

/// Shows how far a transfer has come on the error stream: one line that is redrawn on a terminal, plain lines now and
/// then elsewhere.
class DRProgressPrinter {
public:
    /// Auto means a bar where lines can be redrawn, else plain lines.
    DRProgressPrinter(DRTerminal& terminal, DRProgressMode mode);

    /// A new phase begins; `title` is for a person.
    void phase(const QString& title);

    /// The share done, 0 to 1, and the time left as text.
    void progress(double fraction, const QString& timeLeft);

private:
    void drawBar(double fraction, const QString& timeLeft);

    DRTerminal& m_terminal;
    DRProgressMode m_mode;
    QString m_title;
    QElapsedTimer m_sinceLine;
};
