#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>

#include "model/packet/DRPacketPayload.h"

/// Hands the archive inside a packet to a `DRTarReader`, through one buffer, and remembers whether reading it failed.
class DRPacketArchiveSource {
public:
    /// The payload must outlive this object.
    explicit DRPacketArchiveSource(DRPacketPayload& payload) : m_payload(payload) {}

    /// The archive's next bytes, valid until the next call; empty at its end and after a failure.
    [[nodiscard]] std::span<const char> next()
    {
        if (m_hasFailed) {
            return {};
        }
        const std::optional<std::size_t> size = m_payload.read({m_buffer.get(), kBufferBytes});
        if (!size) {
            m_hasFailed = true;
            return {};
        }
        m_isEmpty = m_isEmpty && *size == 0;
        return {m_buffer.get(), *size};
    }

    /// Whether there was no byte so far: a packet of an app without any data may hold none.
    [[nodiscard]] bool isEmpty() const { return m_isEmpty; }

    /// Reads what the archive's reader has left over, since damage may also follow the archive's end. Whether all of
    /// the packet could be read.
    [[nodiscard]] bool readsToItsEnd()
    {
        while (!next().empty()) {
        }
        return !m_hasFailed;
    }

private:
    static constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

    DRPacketPayload& m_payload;
    std::unique_ptr<char[]> m_buffer = std::make_unique_for_overwrite<char[]>(kBufferBytes);
    bool m_hasFailed = false;
    bool m_isEmpty = true;
};
