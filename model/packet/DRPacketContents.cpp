#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketPayload.h"
#include "model/packet/DRTarReader.h"

#include <QFile>

namespace {

constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

/// Reads a packet's archive through one buffer and remembers whether that failed.
class ArchiveSource {
public:
    explicit ArchiveSource(DRPacketPayload& payload) : m_payload(payload) {}

    [[nodiscard]] std::span<const char> next()
    {
        const std::optional<std::size_t> size = m_payload.read({m_buffer.get(), kBufferBytes});
        m_hasFailed = m_hasFailed || !size;
        return {m_buffer.get(), m_hasFailed ? 0 : *size};
    }

    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
    DRPacketPayload& m_payload;
    std::unique_ptr<char[]> m_buffer = std::make_unique_for_overwrite<char[]>(kBufferBytes);
    bool m_hasFailed = false;
};

} // namespace

std::optional<DRPacketContents> packetContents(const QString& packet)
{
    std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet);
    if (!payload) {
        return std::nullopt;
    }
    ArchiveSource source(*payload);
    DRTarReader reader([&source] { return source.next(); });
    DRPacketContents contents{.header = payload->header(), .files = {}};
    while (const auto entry = reader.nextEntry()) {
        if (entry->kind == DRTarReader::Kind::File) {
            contents.files.push_back({QFile::decodeName(entry->path), entry->sizeBytes});
        }
    }
    while (!source.next().empty()) {
        // Damage may also follow the archive's end.
    }
    return source.hasFailed() ? std::nullopt : std::optional(contents);
}
