#pragma once

#include "app/cli/DRCommandOutcome.h"

class DRInterrupt;
class DRTerminal;

/// Asks the person before the phone is written.
namespace DRConsent {

/// Done when the answer to `question`, which ends in "[y/N] ", is yes; else why nothing is started: nobody is there to
/// be asked, no, or Ctrl-C.
[[nodiscard]] DRCommandOutcome ask(const QString& question, DRTerminal& terminal, DRInterrupt& interrupt);

/// How a run ends that was interrupted before it wrote to the phone.
[[nodiscard]] DRCommandOutcome stopped();

} // namespace DRConsent
