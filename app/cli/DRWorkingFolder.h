#pragma once

#include "app/cli/DRCommandOutcome.h"

class DRMigrateStartup;
class DRTerminal;

/// The folder in which a run that writes to the phone keeps its private files; one run at a time has it.
namespace DRWorkingFolder {

/// Makes and locks it until the program's end. Done, or why it is refused.
[[nodiscard]] DRCommandOutcome lock(DRMigrateStartup& startup);

/// Empties it, and warns when that fails.
void clear(const DRMigrateStartup& startup, DRTerminal& terminal);

/// The warning alone.
void warnOfLeftFiles(const DRMigrateStartup& startup, DRTerminal& terminal);

} // namespace DRWorkingFolder
