#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include <QString>

#include "model/packet/DRInflater.h"
#include "model/packet/DRPacketHeader.h"
#include "platform/core/DRFileDescriptor.h"

/// The archive inside a packet file, read once from start to end in bounded memory: inflated, or as it is stored. The
/// file may be removed meanwhile.
class DRPacketPayload {
public:
    /// None when the file cannot be read or its header is refused. A link that `packet` itself is gets followed.
    [[nodiscard]] static std::optional<DRPacketPayload> open(const QString& packet,
                                                             std::unique_ptr<DRInflater> inflater = makeZlibInflater());

    [[nodiscard]] const DRPacketHeader& header() const { return m_header; }

    /// Fills `room` as far as the archive reaches: less than its size only at the archive's end. None when the
    /// compression is damaged or truncated or the file cannot be read. A compressed packet without any payload holds an
    /// empty archive; bytes after the end of the compression are not looked at.
    [[nodiscard]] std::optional<std::size_t> read(std::span<char> room);

    /// Whether nothing follows what was read of the file so far; false also when that cannot be told.
    [[nodiscard]] bool isAtFileEnd();

private:
    DRPacketPayload(DRPacketHeader header, DRFileDescriptor file, std::unique_ptr<DRInflater> inflater);
    [[nodiscard]] std::optional<std::size_t> readStored(std::span<char> room);
    [[nodiscard]] std::optional<std::size_t> readInflated(std::span<char> room);
    /// Reads on in the file; at its end the input stays empty. False when it cannot be read.
    [[nodiscard]] bool refill();

    DRPacketHeader m_header;
    DRFileDescriptor m_file;
    std::unique_ptr<DRInflater> m_inflater;
    std::unique_ptr<char[]> m_buffer;
    std::span<const char> m_input; ///< the part of the buffer that is still to be inflated
    bool m_isAtEnd = false;        ///< of the archive
    bool m_isPayloadEmpty = true;  ///< until a byte after the header was read
};
