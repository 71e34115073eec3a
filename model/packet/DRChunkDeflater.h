#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include <QtGlobal>

/// How far back deflate refers: the bytes before a chunk that its compression may use.
constexpr std::size_t kDeflateWindowBytes = std::size_t{32} * 1024;

/// Deflates chunks of a longer stream on their own, so that several threads can work on one stream: what the chunks
/// give, in order and followed by a last empty block, is one raw deflate stream. Used by one thread at a time.
class DRChunkDeflater {
public:
    DRChunkDeflater() = default;
    virtual ~DRChunkDeflater() = default;
    Q_DISABLE_COPY_MOVE(DRChunkDeflater)

    /// Deflates the chunk into `room`, ending at a byte boundary. `before` is the end of the chunk before it, at most
    /// `kDeflateWindowBytes`, empty for the first. The bytes used; none when the room does not suffice (`deflatedBound`
    /// does).
    [[nodiscard]] virtual std::optional<std::size_t>
    deflate(std::span<const char> before, std::span<const char> chunk, std::span<char> room) = 0;
};

/// The room that suffices for any chunk of this size.
[[nodiscard]] constexpr std::size_t deflatedBound(std::size_t chunkBytes)
{
    return chunkBytes + chunkBytes / 16 + 1024;
}

/// Deflates with zlib's default level.
[[nodiscard]] std::unique_ptr<DRChunkDeflater> makeZlibChunkDeflater();

/// Deflates with ISA-L's highest level, many times as fast for some percent more bytes; with zlib where ISA-L is
/// missing.
[[nodiscard]] std::unique_ptr<DRChunkDeflater> makeFastChunkDeflater();

/// The Adler-32 checksum of the bytes alone.
[[nodiscard]] quint32 fastAdler32(std::span<const char> bytes);
