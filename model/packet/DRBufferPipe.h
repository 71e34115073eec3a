#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

/// Carries bytes from one thread to another through a fixed number of buffers: the writer waits while all are full, the
/// reader while all are empty.
class DRBufferPipe {
public:
    DRBufferPipe(std::size_t bufferCount, std::size_t bufferBytes);

    /// The writer's next buffer, to be filled and committed. Empty when the reader has given up.
    [[nodiscard]] std::span<char> room();

    /// Hands the first `size` bytes of the last `room` to the reader.
    void commit(std::size_t size);

    /// The writer has no more bytes.
    void close();

    /// The reader's next bytes, valid until the next call. Empty at the end.
    [[nodiscard]] std::span<const char> next();

    /// The reader wants no more bytes; the writer's `room` is empty from now on.
    void abandon();

private:
    struct Buffer {
        std::unique_ptr<char[]> bytes;
        std::size_t size = 0;
    };
    [[nodiscard]] Buffer& buffer(std::size_t number) { return m_buffers[number % m_buffers.size()]; }

    const std::size_t m_bufferBytes;
    std::vector<Buffer> m_buffers;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::size_t m_committed = 0; ///< buffers handed over so far
    std::size_t m_released = 0;  ///< buffers that the reader is done with
    bool m_isReading = false;    ///< the reader holds buffer number m_released
    bool m_isClosed = false;
    bool m_isAbandoned = false;
};
