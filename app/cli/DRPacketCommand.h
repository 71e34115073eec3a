#pragma once

#include "app/cli/DRCommand.h"

/// Shows, expands or packs one app packet.
class DRPacketCommand final : public DRCommand {
public:
    using DRCommand::DRCommand;
    [[nodiscard]] DRCommandOutcome run() override;

private:
    [[nodiscard]] DRCommandOutcome show(const QString& file);
    [[nodiscard]] DRCommandOutcome expand(const QString& file, const QString& directory);
    [[nodiscard]] DRCommandOutcome pack(const QString& directory, const QString& file);
};
