#pragma once

#include <QString>

/// The window's own pictures, built into the program: vectors, found by name, such as "migrate_contacts".
namespace DRArtwork {

/// The folder that holds them, to be registered with the resource manager.
[[nodiscard]] QString folder();

/// The name of the program's own icon.
[[nodiscard]] QString applicationIconName();

} // namespace DRArtwork
