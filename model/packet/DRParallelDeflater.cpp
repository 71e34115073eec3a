#include "model/packet/DRParallelDeflater.h"

#include <algorithm>
#include <array>
#include <utility>
#include <zlib.h>

namespace {

constexpr std::size_t kChunksPerThread = 3; ///< one that is filled or put out, one at work, one waiting

/// Deflate, window of 32 KiB, default level: what zlib writes.
constexpr std::array<char, 2> kStreamHeader{'\x78', '\x9c'};

/// A last block without content.
constexpr std::array<char, 2> kLastBlock{'\x03', '\x00'};

std::array<char, 4> bigEndian(quint32 number)
{
    return {static_cast<char>(number >> 24U), static_cast<char>(number >> 16U & 0xffU),
            static_cast<char>(number >> 8U & 0xffU), static_cast<char>(number & 0xffU)};
}

} // namespace

DRParallelDeflater::Chunk::Chunk()
    : memory(std::make_unique_for_overwrite<char[]>(kDeflateWindowBytes + kChunkBytes)),
      deflated(std::make_unique_for_overwrite<char[]>(deflatedBound(kChunkBytes)))
{
}

std::span<const char> DRParallelDeflater::Chunk::before() const
{
    return {memory.get() + kDeflateWindowBytes - beforeSize, beforeSize};
}

std::span<const char> DRParallelDeflater::Chunk::bytes() const
{
    return {memory.get() + kDeflateWindowBytes, size};
}

DRParallelDeflater::DRParallelDeflater(int threadCount, const DeflaterFactory& makeDeflater, Output output)
    : m_output(std::move(output)), m_chunks(kChunksPerThread * static_cast<std::size_t>(threadCount))
{
    m_hasFailed = !m_output(kStreamHeader);
    for (int i = 0; i < threadCount; ++i) {
        m_threads.emplace_back([this, makeDeflater] { work(makeDeflater); });
    }
}

DRParallelDeflater::~DRParallelDeflater()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

std::span<char> DRParallelDeflater::chunk()
{
    if (m_committed - m_written == m_chunks.size()) {
        m_hasFailed = !writeOldest() || m_hasFailed;
    }
    return {chunkNumber(m_committed).memory.get() + kDeflateWindowBytes, kChunkBytes};
}

bool DRParallelDeflater::commit(std::size_t size)
{
    Chunk& current = chunkNumber(m_committed);
    current.size = size;
    current.isDone = false;
    current.beforeSize = 0;
    if (m_committed > 0) {
        const std::span<const char> previous = chunkNumber(m_committed - 1).bytes();
        const std::span<const char> before = previous.last(std::min(previous.size(), kDeflateWindowBytes));
        current.beforeSize = before.size();
        std::copy_n(before.data(), before.size(), current.memory.get() + kDeflateWindowBytes - before.size());
    }
    const std::lock_guard lock(m_mutex);
    ++m_committed;
    m_changed.notify_all();
    return !m_hasFailed;
}

bool DRParallelDeflater::finish()
{
    while (m_written < m_committed) {
        m_hasFailed = !writeOldest() || m_hasFailed;
    }
    return write(kLastBlock) && write(bigEndian(m_checksum));
}

/// Waits for the oldest chunk and puts it out.
bool DRParallelDeflater::writeOldest()
{
    Chunk& oldest = chunkNumber(m_written);
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&oldest] { return oldest.isDone; });
    }
    ++m_written;
    m_checksum = static_cast<quint32>(adler32_combine(m_checksum, oldest.checksum, static_cast<z_off_t>(oldest.size)));
    return oldest.deflatedSize > 0 && write({oldest.deflated.get(), oldest.deflatedSize});
}

bool DRParallelDeflater::write(std::span<const char> bytes)
{
    m_hasFailed = m_hasFailed || !m_output(bytes);
    return !m_hasFailed;
}

void DRParallelDeflater::work(const DeflaterFactory& makeDeflater)
{
    const std::unique_ptr<DRChunkDeflater> deflater = makeDeflater();
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || m_taken < m_committed; });
        if (m_isEnding) {
            return;
        }
        Chunk& chunk = chunkNumber(m_taken++);
        lock.unlock();
        chunk.checksum = fastAdler32(chunk.bytes());
        const std::span<char> room(chunk.deflated.get(), deflatedBound(kChunkBytes));
        chunk.deflatedSize = deflater->deflate(chunk.before(), chunk.bytes(), room).value_or(0);
        lock.lock();
        chunk.isDone = true;
        m_changed.notify_all();
    }
}
