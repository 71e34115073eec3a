#include "model/packet/DRChunkDeflater.h"

#define ZLIB_CONST
#include <zlib.h>

namespace {

constexpr int kRawDeflateWindowBits = -15;
constexpr int kDefaultMemoryLevel = 8;

class DRZlibChunkDeflater final : public DRChunkDeflater {
public:
    DRZlibChunkDeflater()
        : m_isReady(deflateInit2(&m_stream,
                                 Z_DEFAULT_COMPRESSION,
                                 Z_DEFLATED,
                                 kRawDeflateWindowBits,
                                 kDefaultMemoryLevel,
                                 Z_DEFAULT_STRATEGY) == Z_OK)
    {
    }
    ~DRZlibChunkDeflater() override { deflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(DRZlibChunkDeflater)

    [[nodiscard]] std::optional<std::size_t>
    deflate(std::span<const char> before, std::span<const char> chunk, std::span<char> room) override
    {
        if (!m_isReady || deflateReset(&m_stream) != Z_OK || !setDictionary(before)) {
            return std::nullopt;
        }
        m_stream.next_in = reinterpret_cast<const Bytef*>(chunk.data());
        m_stream.avail_in = static_cast<uInt>(chunk.size());
        m_stream.next_out = reinterpret_cast<Bytef*>(room.data());
        m_stream.avail_out = static_cast<uInt>(room.size());
        const int result = ::deflate(&m_stream, Z_SYNC_FLUSH);
        const bool isWhole = result == Z_OK && m_stream.avail_in == 0 && m_stream.avail_out > 0;
        return isWhole ? std::optional(room.size() - m_stream.avail_out) : std::nullopt;
    }

private:
    [[nodiscard]] bool setDictionary(std::span<const char> before)
    {
        const auto* const bytes = reinterpret_cast<const Bytef*>(before.data());
        return before.empty() || deflateSetDictionary(&m_stream, bytes, static_cast<uInt>(before.size())) == Z_OK;
    }

    z_stream m_stream{};
    bool m_isReady;
};

} // namespace

std::unique_ptr<DRChunkDeflater> makeZlibChunkDeflater()
{
    return std::make_unique<DRZlibChunkDeflater>();
}
