#pragma once

#include "app/cli/DRCommand.h"

/// Describes the phone.
class DRPhoneCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;
};
