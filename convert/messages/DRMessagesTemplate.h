#pragma once

#include <QString>

/// Writes the empty message database of a 4.x phone to `path` (69632 bytes: 68 pages of 1024; tables, triggers, search
/// index, schema version 57), making the folders above it and replacing, atomically, whatever file was there together
/// with its journal and write-ahead log. False when it cannot be written. The schema stands in `sql/`.
[[nodiscard]] bool writeEmptyMessagesDatabase(const QString& path);
