#include "model/packet/DRBufferPipe.h"

DRBufferPipe::DRBufferPipe(std::size_t bufferCount, std::size_t bufferBytes)
    : m_bufferBytes(bufferBytes), m_buffers(bufferCount)
{
    for (Buffer& buffer : m_buffers) {
        buffer.bytes = std::make_unique_for_overwrite<char[]>(bufferBytes);
    }
}

std::span<char> DRBufferPipe::room()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_isAbandoned || m_committed - m_released < m_buffers.size(); });
    if (m_isAbandoned) {
        return {};
    }
    return {buffer(m_committed).bytes.get(), m_bufferBytes};
}

void DRBufferPipe::commit(std::size_t size)
{
    const std::lock_guard lock(m_mutex);
    buffer(m_committed).size = size;
    ++m_committed;
    m_changed.notify_all();
}

void DRBufferPipe::close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_changed.notify_all();
}

std::span<const char> DRBufferPipe::next()
{
    std::unique_lock lock(m_mutex);
    if (m_isReading) {
        m_isReading = false;
        ++m_released;
        m_changed.notify_all();
    }
    m_changed.wait(lock, [this] { return m_isClosed || m_released < m_committed; });
    if (m_released == m_committed) {
        return {};
    }
    m_isReading = true;
    const Buffer& current = buffer(m_released);
    return {current.bytes.get(), current.size};
}

void DRBufferPipe::abandon()
{
    const std::lock_guard lock(m_mutex);
    m_isAbandoned = true;
    m_changed.notify_all();
}
