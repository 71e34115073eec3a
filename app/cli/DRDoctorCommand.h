#pragma once

#include "app/cli/DRCommand.h"

/// Checks what a transfer needs and tells the fix for what is missing. The exit code is that of the first missing
/// thing.
class DRDoctorCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
