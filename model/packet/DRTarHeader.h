#pragma once

#include <cstddef>

#include <QByteArray>

/// The archive format that the phone's restore reads: POSIX ustar with octal numbers, regular files, and extended
/// headers only where ustar cannot say it. See docs/formats/packet.md.

constexpr std::size_t kTarBlockBytes = 512;

/// The bytes of zeros that end an archive.
constexpr std::size_t kTarEndBytes = 2 * kTarBlockBytes;

/// The header blocks of one regular file: one block, or, when the path is not ASCII or too long for ustar or the size
/// has more than 11 octal digits, an extended header with path and size before it. `path` is relative, in UTF-8; times
/// before 1970 become 1970.
[[nodiscard]] QByteArray tarHeader(const QByteArray& path, quint64 sizeBytes, qint64 modificationSeconds);

/// The zeros between a file's end and the next block.
[[nodiscard]] constexpr std::size_t tarPadding(quint64 sizeBytes)
{
    return static_cast<std::size_t>((kTarBlockBytes - sizeBytes % kTarBlockBytes) % kTarBlockBytes);
}
