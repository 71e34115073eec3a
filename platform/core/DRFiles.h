#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The few things that are done to whole files, each safe against interruption and links.
namespace DRFiles {

/// Writes the bytes to a temporary file beside `path`, flushes it to disk and renames it over `path`. The new file has
/// mode 0600. False on failure; `path` then is what it was before.
[[nodiscard]] bool writeAtomically(const QString& path, const QByteArray& bytes);

/// The bytes of a regular file, never through a link; a pipe or device is refused without waiting. None when it cannot
/// be read, with EIO in `errno` when the disk did not answer, or is larger than `maximumBytes`.
[[nodiscard]] std::optional<QByteArray> readRegularFile(const QString& path, qint64 maximumBytes);

/// Copies a regular file (never through a link) to a new file `target` with mode 0600, letting the file system share
/// blocks where it can, in bounded memory. `target` must not exist. False on failure; no partial `target` is left then.
/// The copy is not flushed: see `flushToDisk`.
[[nodiscard]] bool copyToNewFile(const QString& source, const QString& target);

/// Flushes a written file, or a folder's entries, to disk. False on failure.
[[nodiscard]] bool flushToDisk(const QString& path);

/// Renames over an existing file, atomically. Both must lie on one file system. False on failure, with nothing changed.
[[nodiscard]] bool replace(const QString& temporary, const QString& target);

/// Whether `path` is a regular file itself, not a link to one.
[[nodiscard]] bool isRegularFile(const QString& path);

/// Removes the folder with all that is in it, never following links. True also when it did not exist.
bool removeTree(const QString& path);

} // namespace DRFiles
