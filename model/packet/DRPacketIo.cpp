#include "model/packet/DRPacketIo.h"

#include "platform/core/DRFileDescriptor.h"

#include <cerrno>
#include <unistd.h>

namespace {

/// Repeats a call that a signal interrupted.
template <typename Call> ssize_t uninterrupted(const Call& call)
{
    ssize_t result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace

std::optional<std::size_t> DRPacketIo::readAt(const DRFileDescriptor& file, std::span<char> room, quint64 offset)
{
    std::size_t filled = 0;
    while (filled < room.size()) {
        const std::span<char> rest = room.subspan(filled);
        const auto position = static_cast<off_t>(offset + filled);
        const ssize_t size = uninterrupted([&] { return ::pread(file.number(), rest.data(), rest.size(), position); });
        if (size < 0) {
            return std::nullopt;
        }
        if (size == 0) {
            break;
        }
        filled += static_cast<std::size_t>(size);
    }
    return filled;
}

bool DRPacketIo::writeAt(const DRFileDescriptor& file, std::span<const char> bytes, quint64 offset)
{
    while (!bytes.empty()) {
        const auto position = static_cast<off_t>(offset);
        const ssize_t size =
            uninterrupted([&] { return ::pwrite(file.number(), bytes.data(), bytes.size(), position); });
        if (size < 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(size));
        offset += static_cast<quint64>(size);
    }
    return true;
}
