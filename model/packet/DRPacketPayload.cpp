#include "model/packet/DRPacketPayload.h"

#include <QFileInfo>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t kBufferBytes = std::size_t{128} * 1024;

DRFileDescriptor openPacket(const QString& packet)
{
    return DRFileDescriptor::openRegularFile(QFileInfo(packet).canonicalFilePath());
}

QByteArray firstBytes(const DRFileDescriptor& file)
{
    QByteArray bytes(kLongestPacketHeader, Qt::Uninitialized);
    const qint64 size = file.read(bytes.data(), bytes.size());
    bytes.truncate(std::max<qint64>(size, 0));
    return bytes;
}

} // namespace

std::optional<DRPacketPayload> DRPacketPayload::open(const QString& packet, std::unique_ptr<DRInflater> inflater)
{
    DRFileDescriptor file = openPacket(packet);
    std::optional<DRPacketHeader> header = packetHeaderFromBytes(firstBytes(file));
    if (!header || ::lseek(file.number(), header->payloadOffset, SEEK_SET) < 0) {
        return std::nullopt;
    }
    return DRPacketPayload(*std::move(header), std::move(file), std::move(inflater));
}

DRPacketPayload::DRPacketPayload(DRPacketHeader header, DRFileDescriptor file, std::unique_ptr<DRInflater> inflater)
    : m_header(std::move(header)),
      m_file(std::move(file)),
      m_inflater(std::move(inflater)),
      m_buffer(std::make_unique_for_overwrite<char[]>(kBufferBytes))
{
}

std::optional<std::size_t> DRPacketPayload::read(std::span<char> room)
{
    std::size_t filled = 0;
    while (filled < room.size() && !m_isAtEnd) {
        const std::span<char> rest = room.subspan(filled);
        const std::optional<std::size_t> size = m_header.isCompressed() ? readInflated(rest) : readStored(rest);
        if (!size) {
            return std::nullopt;
        }
        filled += *size;
    }
    return filled;
}

bool DRPacketPayload::isAtFileEnd()
{
    return m_input.empty() && refill() && m_input.empty();
}

std::optional<std::size_t> DRPacketPayload::readStored(std::span<char> room)
{
    const qint64 size = m_file.read(room.data(), static_cast<qint64>(room.size()));
    if (size < 0) {
        return std::nullopt;
    }
    m_isAtEnd = size == 0;
    return static_cast<std::size_t>(size);
}

std::optional<std::size_t> DRPacketPayload::readInflated(std::span<char> room)
{
    if (m_input.empty() && !refill()) {
        return std::nullopt;
    }
    if (m_isPayloadEmpty) {
        m_isAtEnd = true;
        return 0;
    }
    const DRInflater::Step step = m_inflater->inflate(m_input, room);
    m_input = m_input.subspan(step.consumed);
    m_isAtEnd = step.state == DRInflater::State::Ended;
    const bool isTruncated = !m_isAtEnd && step.consumed == 0 && step.produced == 0;
    if (isTruncated || step.state == DRInflater::State::Damaged) {
        return std::nullopt;
    }
    return step.produced;
}

bool DRPacketPayload::refill()
{
    const qint64 size = m_file.read(m_buffer.get(), static_cast<qint64>(kBufferBytes));
    if (size < 0) {
        return false;
    }
    m_input = {m_buffer.get(), static_cast<std::size_t>(size)};
    m_isPayloadEmpty = m_isPayloadEmpty && m_input.empty();
    return true;
}
