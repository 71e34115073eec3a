#pragma once

#include <QString>

/// Writes the database that the script makes to `path`, making the folders above it and replacing, atomically, whatever
/// file was there together with its journal and write-ahead log. False when the script fails or the file cannot be
/// written; what was at `path` is there then, perhaps without its journal.
[[nodiscard]] bool writeNewDatabase(const QString& path, const QString& script);
