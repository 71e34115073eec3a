#pragma once

#include <QString>

/// The texts that --help and --version show.
namespace DRCommandHelp {

/// The help of a command; of the whole program when the command is empty or unknown.
[[nodiscard]] QString text(const QString& command);

[[nodiscard]] QString version();

} // namespace DRCommandHelp
