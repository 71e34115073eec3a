#pragma once

#include <cstddef>
#include <functional>
#include <optional>

#include <QByteArray>
#include <QtGlobal>

class DRFileDescriptor;

/// Told of the bytes that have been copied so far. May be empty.
using DRByteProgress = std::function<void(quint64 bytes)>;

/// The content of open files, handled in bounded memory.
namespace DRFileContent {

/// Copies all that is left to read of `source` to the end of `target`, letting the file system share blocks where it
/// can. The bytes copied; none on failure, with the cause in `errno`.
[[nodiscard]] std::optional<quint64>
copy(const DRFileDescriptor& source, const DRFileDescriptor& target, const DRByteProgress& progress);

/// Whether both files hold the same bytes. Their read positions stay where they were.
[[nodiscard]] bool isSame(const DRFileDescriptor& first, const DRFileDescriptor& second);

/// A number that is the same for files of the same content, and seldom for others: made of the size, the beginning and
/// the end. Good for as long as the program runs. The read position stays where it was.
[[nodiscard]] std::size_t likeness(const DRFileDescriptor& file);

/// An unnamed file in memory that holds these bytes, at its beginning; not open when it cannot be made.
[[nodiscard]] DRFileDescriptor fileInMemory(const QByteArray& bytes);

} // namespace DRFileContent
