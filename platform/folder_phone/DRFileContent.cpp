#include "platform/folder_phone/DRFileContent.h"

#include "platform/folder_phone/DRNoFollow.h"

#include <QHashFunctions>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBufferBytes = std::size_t{64} * 1024;
constexpr std::size_t kSharedBytes = std::size_t{8} * 1024 * 1024; ///< per call, so that progress is told in between

/// Adds up what has been copied and tells of it.
class Tally {
public:
    explicit Tally(const DRByteProgress& progress) : m_progress(progress) {}

    void add(qint64 count)
    {
        m_bytes += static_cast<quint64>(count);
        if (m_progress) {
            m_progress(m_bytes);
        }
    }
    [[nodiscard]] quint64 bytes() const { return m_bytes; }

private:
    const DRByteProgress& m_progress;
    quint64 m_bytes = 0;
};

bool copyThroughMemory(const DRFileDescriptor& source, const DRFileDescriptor& target, Tally& tally)
{
    std::vector<char> buffer(kBufferBytes);
    while (true) {
        const qint64 count = source.read(buffer.data(), static_cast<qint64>(buffer.size()));
        if (count <= 0) {
            return count == 0;
        }
        if (!target.writeAll(buffer.data(), count)) {
            return false;
        }
        tally.add(count);
    }
}

/// As many bytes as asked for, fewer only at the end of the file.
std::size_t readAt(const DRFileDescriptor& file, quint64 offset, std::vector<char>& buffer)
{
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count =
            ::pread(file.number(), buffer.data() + filled, buffer.size() - filled, static_cast<off_t>(offset + filled));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

} // namespace

std::optional<quint64>
DRFileContent::copy(const DRFileDescriptor& source, const DRFileDescriptor& target, const DRByteProgress& progress)
{
    Tally tally(progress);
    ssize_t count = 0;
    while ((count = ::copy_file_range(source.number(), nullptr, target.number(), nullptr, kSharedBytes, 0)) > 0) {
        tally.add(count);
    }
    // At the end, or where this cannot go on between these two files: plain reading finds out which.
    if (!copyThroughMemory(source, target, tally)) {
        return std::nullopt;
    }
    return tally.bytes();
}

bool DRFileContent::isSame(const DRFileDescriptor& first, const DRFileDescriptor& second)
{
    const quint64 size = DRNoFollow::sizeOf(first);
    if (size != DRNoFollow::sizeOf(second)) {
        return false;
    }
    std::vector<char> ours(kBufferBytes);
    std::vector<char> theirs(kBufferBytes);
    for (quint64 offset = 0; offset < size; offset += kBufferBytes) {
        const auto expected = static_cast<std::size_t>(std::min<quint64>(kBufferBytes, size - offset));
        if (readAt(first, offset, ours) != expected || readAt(second, offset, theirs) != expected ||
            std::memcmp(ours.data(), theirs.data(), expected) != 0) {
            return false;
        }
    }
    return true;
}

std::size_t DRFileContent::likeness(const DRFileDescriptor& file)
{
    constexpr std::size_t kEdgeBytes = 4096;
    const quint64 size = DRNoFollow::sizeOf(file);
    std::vector<char> edge(kEdgeBytes);
    const std::size_t first = readAt(file, 0, edge);
    const std::size_t beginning = qHashBits(edge.data(), first, size);
    const std::size_t last = readAt(file, size - std::min<quint64>(size, kEdgeBytes), edge);
    return qHashBits(edge.data(), last, beginning);
}

DRFileDescriptor DRFileContent::fileInMemory(const QByteArray& bytes)
{
    DRFileDescriptor file(::memfd_create("phone-file", MFD_CLOEXEC));
    if (!file.isOpen() || !file.writeAll(bytes.constData(), bytes.size()) || ::lseek(file.number(), 0, SEEK_SET) != 0) {
        return {};
    }
    return file;
}
