#include "model/packet/DRInflater.h"
#include "model/packet/DRMigratePacketCodec.h"

#include <algorithm>
#include <limits>
#define ZLIB_CONST
#include <zlib.h>

namespace {

constexpr qsizetype kDeflateStep = 16384;

std::span<const char> inputAfter(const QByteArray& bytes, std::size_t consumed)
{
    return std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())).subspan(consumed);
}

std::span<char> roomAfter(QByteArray& bytes, std::size_t produced)
{
    return std::span(bytes.data(), static_cast<std::size_t>(bytes.size())).subspan(produced);
}

/// Hands zlib the input in pieces that its 32-bit counter holds. Z_FINISH belongs to the last of them.
int nextFlush(z_stream& stream, std::span<const char>& input)
{
    if (stream.avail_in == 0 && !input.empty()) {
        const std::size_t size = std::min<std::size_t>(input.size(), std::numeric_limits<uInt>::max());
        stream.next_in = reinterpret_cast<const Bytef*>(input.data());
        stream.avail_in = static_cast<uInt>(size);
        input = input.subspan(size);
    }
    return input.empty() ? Z_FINISH : Z_NO_FLUSH;
}

} // namespace

std::optional<QByteArray> zlibInflate(const QByteArray& bytes)
{
    if (bytes.isEmpty()) {
        return bytes;
    }
    const std::unique_ptr<DRInflater> inflater = makeZlibInflater();
    QByteArray inflated(bytes.size() + bytes.size() / 2, Qt::Uninitialized);
    std::size_t consumed = 0;
    std::size_t produced = 0;
    for (;;) {
        if (produced == static_cast<std::size_t>(inflated.size())) {
            inflated.resize(inflated.size() * 2);
        }
        const DRInflater::Step step = inflater->inflate(inputAfter(bytes, consumed), roomAfter(inflated, produced));
        consumed += step.consumed;
        produced += step.produced;
        if (step.state == DRInflater::State::Ended) {
            inflated.truncate(static_cast<qsizetype>(produced));
            return inflated;
        }
        const bool isStuck = step.consumed == 0 && step.produced == 0;
        if (step.state == DRInflater::State::Damaged || isStuck) {
            return std::nullopt;
        }
    }
}

std::optional<QByteArray> zlibDeflate(const QByteArray& bytes)
{
    if (bytes.isEmpty()) {
        return bytes;
    }
    z_stream stream{};
    if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) {
        return std::nullopt;
    }
    std::span<const char> input = inputAfter(bytes, 0);
    QByteArray deflated;
    std::size_t produced = 0;
    int result = Z_OK;
    while (result == Z_OK || result == Z_BUF_ERROR) {
        const int flush = nextFlush(stream, input);
        deflated.resize(static_cast<qsizetype>(produced) + kDeflateStep);
        const std::span<char> room = roomAfter(deflated, produced);
        stream.next_out = reinterpret_cast<Bytef*>(room.data());
        stream.avail_out = static_cast<uInt>(room.size());
        result = deflate(&stream, flush);
        produced += room.size() - stream.avail_out;
    }
    deflateEnd(&stream);
    if (result != Z_STREAM_END) {
        return std::nullopt;
    }
    deflated.truncate(static_cast<qsizetype>(produced));
    return deflated;
}
