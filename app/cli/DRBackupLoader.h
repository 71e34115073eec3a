#pragma once

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

class DRInterrupt;

/// Loads the content of an iPhone backup and waits for it, in the event loop.
namespace DRBackupLoader {

enum class Ending { Loaded, Interrupted };

/// Adds all data types to the entry and loads them. Each tells by its flags and report how it went. After an
/// interruption tasks may still run in the background.
[[nodiscard]] Ending load(DRMigrateIPhoneBackupEntry& entry, DRInterrupt& interrupt);

} // namespace DRBackupLoader
