#pragma once

#include "app/cli/DRCommand.h"

/// Loads a backup and shows what it holds: counts and sizes per kind. Nothing stays on disk.
class DRInspectCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
