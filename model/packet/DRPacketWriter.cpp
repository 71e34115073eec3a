#include "model/packet/DRPacketWriter.h"

#include "model/packet/DRTarHeader.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view kPacketHeader = "ANDROID BACKUP\n1\n1\nnone\n";

constexpr int kDeflatingThreads = 2;

bool writeAll(const DRFileDescriptor& file, std::span<const char> bytes)
{
    if (file.writeAll(bytes.data(), static_cast<qint64>(bytes.size()))) {
        return true;
    }
    qCWarning(lcMigrate, "A packet cannot be written: %s", std::strerror(errno));
    return false;
}

bool isSameVersion(const struct stat& left, const struct stat& right)
{
    return left.st_size == right.st_size && left.st_mtim.tv_sec == right.st_mtim.tv_sec &&
           left.st_mtim.tv_nsec == right.st_mtim.tv_nsec;
}

} // namespace

DRPacketWriter::DRPacketWriter(const DRFileDescriptor& archive, const DRFileDescriptor& packet)
    : m_archive(archive),
      m_isHeaderWritten(writeAll(packet, kPacketHeader)),
      m_deflater(kDeflatingThreads, makeFastChunkDeflater, [&packet](auto bytes) { return writeAll(packet, bytes); })
{
}

bool DRPacketWriter::addFile(const QByteArray& path, const DRFileDescriptor& file)
{
    const auto before = file.status();
    if (!before) {
        qCWarning(lcMigrate, "A file cannot be packed: %s", std::strerror(errno));
        return false;
    }
    const auto size = static_cast<quint64>(before->st_size);
    if (!put(tarHeader(path, size, before->st_mtim.tv_sec)) || !putContent(file, size) || !putZeros(tarPadding(size))) {
        return false;
    }
    const auto after = file.status();
    const bool isUnchanged = after && isSameVersion(*before, *after);
    if (!isUnchanged) {
        qCWarning(lcMigrate, "A file changed while it was packed");
    }
    return isUnchanged;
}

bool DRPacketWriter::finish()
{
    return putZeros(kTarEndBytes) && commitChunk() && m_deflater.finish() && m_isHeaderWritten;
}

/// The free rest of the chunk, never empty.
std::span<char> DRPacketWriter::room()
{
    if (m_chunk.empty()) {
        m_chunk = m_deflater.chunk();
    }
    return m_chunk.subspan(m_filled);
}

/// Takes the first bytes of the room as filled.
bool DRPacketWriter::advance(std::size_t size)
{
    m_filled += size;
    return m_filled < m_chunk.size() || commitChunk();
}

bool DRPacketWriter::put(std::span<const char> bytes)
{
    while (!bytes.empty()) {
        const std::span<char> space = room();
        const std::size_t size = std::min(bytes.size(), space.size());
        std::copy_n(bytes.data(), size, space.data());
        if (!advance(size)) {
            return false;
        }
        bytes = bytes.subspan(size);
    }
    return true;
}

bool DRPacketWriter::putZeros(std::size_t size)
{
    static constexpr std::array<char, kTarEndBytes> kZeros{};
    return put(std::span(kZeros).first(size));
}

/// Reads straight into the chunks, for files are most of an archive.
bool DRPacketWriter::putContent(const DRFileDescriptor& file, quint64 size)
{
    while (size > 0) {
        const std::span<char> space = room();
        const qint64 count = file.read(space.data(), static_cast<qint64>(std::min<quint64>(size, space.size())));
        if (count <= 0) {
            qCWarning(lcMigrate, "A file cannot be packed: %s", count < 0 ? std::strerror(errno) : "it became shorter");
            return false;
        }
        if (!advance(static_cast<std::size_t>(count))) {
            return false;
        }
        size -= static_cast<quint64>(count);
    }
    return true;
}

bool DRPacketWriter::commitChunk()
{
    if (m_filled == 0) {
        return true;
    }
    const std::size_t size = std::exchange(m_filled, 0);
    const std::span<const char> bytes = std::exchange(m_chunk, {}).first(size);
    return writeAll(m_archive, bytes) && m_deflater.commit(size);
}
