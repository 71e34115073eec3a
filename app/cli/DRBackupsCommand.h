#pragma once

#include "app/cli/DRCommand.h"

/// Lists the iPhone backups in the backups folder, usable or not, with the reason.
class DRBackupsCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
