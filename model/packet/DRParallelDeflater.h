#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include <QtGlobal>

#include "model/packet/DRChunkDeflater.h"

/// Deflates a long run of bytes into one zlib stream, several chunks of it at a time on threads of its own, in bounded
/// memory. What it writes does not depend on the number of threads.
class DRParallelDeflater {
public:
    /// Takes the stream's next bytes. False when they cannot be written; nothing more is handed over then.
    using Output = std::function<bool(std::span<const char>)>;
    using DeflaterFactory = std::function<std::unique_ptr<DRChunkDeflater>()>;

    static constexpr std::size_t kChunkBytes = std::size_t{512} * 1024;

    /// `output` is called from the thread that uses this object.
    DRParallelDeflater(int threadCount, const DeflaterFactory& makeDeflater, Output output);
    ~DRParallelDeflater();
    Q_DISABLE_COPY_MOVE(DRParallelDeflater)

    /// The memory for the next chunk, `kChunkBytes` long; waits until some is free.
    [[nodiscard]] std::span<char> chunk();

    /// Deflates the first `size` bytes, at least one, of the last `chunk`. False when deflating or writing has failed.
    [[nodiscard]] bool commit(std::size_t size);

    /// Writes what is still missing. False when deflating or writing has failed; the stream is worthless then.
    [[nodiscard]] bool finish();

private:
    struct Chunk {
        Chunk();
        [[nodiscard]] std::span<const char> before() const;
        [[nodiscard]] std::span<const char> bytes() const;

        std::unique_ptr<char[]> memory; ///< the end of the chunk before, then the chunk
        std::size_t beforeSize = 0;
        std::size_t size = 0;
        std::unique_ptr<char[]> deflated;
        std::size_t deflatedSize = 0; ///< 0 when deflating failed
        quint32 checksum = 0;
        bool isDone = false;
    };

    [[nodiscard]] Chunk& chunkNumber(std::size_t number) { return m_chunks[number % m_chunks.size()]; }
    void work(const DeflaterFactory& makeDeflater);
    [[nodiscard]] bool writeOldest();
    [[nodiscard]] bool write(std::span<const char> bytes);

    Output m_output;
    std::vector<Chunk> m_chunks;
    std::size_t m_written = 0; ///< chunks put out so far
    quint32 m_checksum = 1;    ///< Adler-32 of those
    bool m_hasFailed = false;

    std::mutex m_mutex; ///< guards what follows, and the chunks between their commit and `isDone`
    std::condition_variable m_changed;
    std::size_t m_committed = 0;
    std::size_t m_taken = 0; ///< chunks that a thread has begun
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};
