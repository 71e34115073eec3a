#pragma once

#include "app/cli/DRCommand.h"

/// Lists the phone backups that transfers have kept on this computer, whole or not, with the reason.
class DRPhoneBackupsCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
