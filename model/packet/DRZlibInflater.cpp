#include "model/packet/DRInflater.h"

#include <algorithm>
#include <limits>
#define ZLIB_CONST
#include <zlib.h>

namespace {

/// zlib counts in 32 bits.
uInt zlibSize(std::size_t size)
{
    return static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
}

DRInflater::State stateAfter(int result)
{
    switch (result) {
    case Z_OK:
    case Z_BUF_ERROR: // no progress was possible: not an error of the stream
        return DRInflater::State::Running;
    case Z_STREAM_END:
        return DRInflater::State::Ended;
    default:
        return DRInflater::State::Damaged;
    }
}

class DRZlibInflater final : public DRInflater {
public:
    DRZlibInflater() : m_isReady(inflateInit(&m_stream) == Z_OK) {}
    ~DRZlibInflater() override { inflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(DRZlibInflater)

    [[nodiscard]] Step inflate(std::span<const char> input, std::span<char> output) override
    {
        if (!m_isReady) {
            return {State::Damaged, 0, 0};
        }
        const uInt inputSize = zlibSize(input.size());
        const uInt outputSize = zlibSize(output.size());
        m_stream.next_in = reinterpret_cast<const Bytef*>(input.data());
        m_stream.avail_in = inputSize;
        m_stream.next_out = reinterpret_cast<Bytef*>(output.data());
        m_stream.avail_out = outputSize;
        const int result = ::inflate(&m_stream, Z_SYNC_FLUSH);
        return {stateAfter(result), inputSize - m_stream.avail_in, outputSize - m_stream.avail_out};
    }

private:
    z_stream m_stream{};
    bool m_isReady;
};

} // namespace

std::unique_ptr<DRInflater> makeZlibInflater()
{
    return std::make_unique<DRZlibInflater>();
}
