#pragma once

#include "app/cli/DRCommandLine.h"
#include "app/cli/DRCommandOutcome.h"

class DRMigrateStartup;
class DRTerminal;

/// One command of the program, run once.
class DRCommand {
public:
    DRCommand(const DRCommandLine& line, DRMigrateStartup& startup, DRTerminal& terminal)
        : m_line(line), m_startup(startup), m_terminal(terminal)
    {
    }
    virtual ~DRCommand() = default;
    DRCommand(const DRCommand&) = delete;
    DRCommand& operator=(const DRCommand&) = delete;

    /// Does the work and answers how it ended. Data has been written then; an error's message has not, the caller does.
    [[nodiscard]] virtual DRCommandOutcome run() = 0;

protected:
    [[nodiscard]] const DRCommandLine& line() const { return m_line; }
    [[nodiscard]] DRMigrateStartup& startup() const { return m_startup; }
    [[nodiscard]] DRTerminal& terminal() const { return m_terminal; }

private:
    const DRCommandLine& m_line;
    DRMigrateStartup& m_startup;
    DRTerminal& m_terminal;
};
