#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include <QtGlobal>

class DRFileDescriptor;

/// Whole spans at positions of an open file. What fails leaves its reason in errno.
namespace DRPacketIo {

/// Reads from `offset` until `room` is full or the file ends. The bytes read; none on failure.
[[nodiscard]] std::optional<std::size_t> readAt(const DRFileDescriptor& file, std::span<char> room, quint64 offset);

/// Writes all the bytes at `offset`. False on failure; some may have been written then.
[[nodiscard]] bool writeAt(const DRFileDescriptor& file, std::span<const char> bytes, quint64 offset);

} // namespace DRPacketIo
