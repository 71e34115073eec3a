#include "model/packet/DRChunkDeflater.h"

#ifdef MIGRATE_HAS_ISAL

#include <algorithm>
#include <array>
#include <isa-l/igzip_lib.h>

namespace {

constexpr uint32_t kLevel = 3;
constexpr uint32_t kLevelBufferBytes = ISAL_DEF_LVL3_DEFAULT;

/// Half of a packet is pictures and films, which deflate cannot make smaller. Trying it on these samples, each longer
/// than the window, costs a tenth of trying it on all.
constexpr std::size_t kSampleBytes = std::size_t{48} * 1024;
constexpr uint32_t kSampleLevel = 1;
constexpr std::size_t kLeastChunkToSample = 4 * kSampleBytes;

/// What a sample must lose at least, in parts of its size, to be worth the work.
constexpr std::size_t kLeastGain = 100;

constexpr std::size_t kLargestStoredBlock = 65535;

/// The library takes its input as not constant, but only reads it.
uint8_t* isalInput(std::span<const char> bytes)
{
    return const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>(bytes.data()));
}

/// The bytes as stored blocks, which any position of a deflate stream at a byte boundary may hold.
std::optional<std::size_t> store(std::span<const char> bytes, std::span<char> room)
{
    std::size_t used = 0;
    while (!bytes.empty()) {
        const std::span<const char> block = bytes.first(std::min(bytes.size(), kLargestStoredBlock));
        const auto size = static_cast<uint16_t>(block.size());
        const auto check = static_cast<uint16_t>(~size);
        const std::array<char, 5> header{0, static_cast<char>(size & 0xffU), static_cast<char>(size >> 8U),
                                         static_cast<char>(check & 0xffU), static_cast<char>(check >> 8U)};
        if (used + header.size() + block.size() > room.size()) {
            return std::nullopt;
        }
        std::ranges::copy(header, room.subspan(used).begin());
        std::copy_n(block.data(), block.size(), room.data() + used + header.size());
        used += header.size() + block.size();
        bytes = bytes.subspan(block.size());
    }
    return used;
}

class DRIsalChunkDeflater final : public DRChunkDeflater {
public:
    [[nodiscard]] std::optional<std::size_t>
    deflate(std::span<const char> before, std::span<const char> chunk, std::span<char> room) override
    {
        return isWorthDeflating(chunk, room) ? run(kLevel, before, chunk, room) : store(chunk, room);
    }

private:
    /// `room` is scratch memory here.
    [[nodiscard]] bool isWorthDeflating(std::span<const char> chunk, std::span<char> room)
    {
        if (chunk.size() < kLeastChunkToSample) {
            return true;
        }
        const std::array samples{chunk.first(kSampleBytes), chunk.subspan(chunk.size() / 2, kSampleBytes)};
        return std::ranges::any_of(samples, [this, room](std::span<const char> sample) {
            const std::optional<std::size_t> size = run(kSampleLevel, {}, sample, room);
            return !size || *size < sample.size() - sample.size() / kLeastGain;
        });
    }

    [[nodiscard]] std::optional<std::size_t>
    run(uint32_t level, std::span<const char> before, std::span<const char> chunk, std::span<char> room)
    {
        isal_deflate_init(&m_stream);
        m_stream.level = level;
        m_stream.level_buf = m_levelBuffer.get();
        m_stream.level_buf_size = kLevelBufferBytes;
        m_stream.gzip_flag = IGZIP_DEFLATE;
        m_stream.flush = SYNC_FLUSH;
        if (!setDictionary(before)) {
            return std::nullopt;
        }
        m_stream.next_in = isalInput(chunk);
        m_stream.avail_in = static_cast<uint32_t>(chunk.size());
        m_stream.next_out = reinterpret_cast<uint8_t*>(room.data());
        m_stream.avail_out = static_cast<uint32_t>(room.size());
        const int result = isal_deflate(&m_stream);
        const bool isWhole = result == COMP_OK && m_stream.avail_in == 0 && m_stream.avail_out > 0;
        return isWhole ? std::optional(room.size() - m_stream.avail_out) : std::nullopt;
    }

    [[nodiscard]] bool setDictionary(std::span<const char> before)
    {
        const auto size = static_cast<uint32_t>(before.size());
        return before.empty() || isal_deflate_set_dict(&m_stream, isalInput(before), size) == COMP_OK;
    }

    isal_zstream m_stream{};
    std::unique_ptr<uint8_t[]> m_levelBuffer = std::make_unique<uint8_t[]>(kLevelBufferBytes);
};

} // namespace

std::unique_ptr<DRChunkDeflater> makeFastChunkDeflater()
{
    return std::make_unique<DRIsalChunkDeflater>();
}

quint32 fastAdler32(std::span<const char> bytes)
{
    return isal_adler32(1, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

#else

#include <zlib.h>

std::unique_ptr<DRChunkDeflater> makeFastChunkDeflater()
{
    return makeZlibChunkDeflater();
}

quint32 fastAdler32(std::span<const char> bytes)
{
    return static_cast<quint32>(adler32_z(1, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
}

#endif
