#pragma once

#include "app/cli/DRCommand.h"

/// Writes a sample backup and a sample phone.
class DRSampleCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
