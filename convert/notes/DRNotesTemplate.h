#pragma once

#include <QString>

/// Writes the empty database of the phone's notes app to `path` (5120 bytes: tables, the local account, schema version
/// 1), making the folders above it and replacing, atomically, whatever file was there together with its journal and
/// write-ahead log. False when it cannot be written.
[[nodiscard]] bool writeEmptyNotesDatabase(const QString& path);
