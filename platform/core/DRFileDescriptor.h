#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>

/// The path as the system takes it; empty, which no file has, for a text with a NUL character in it.
[[nodiscard]] QByteArray nativePath(const QString& path);

/// What lies at the path itself, not where a link there leads. None when nothing does or it cannot be told.
[[nodiscard]] std::optional<struct stat> statusWithoutFollowing(const QString& path);

/// An open file of the system, closed when this object goes.
class DRFileDescriptor {
public:
    DRFileDescriptor() = default;
    explicit DRFileDescriptor(int descriptor) : m_descriptor(descriptor) {}

    /// Opens the path with these O_ flags, to which O_CLOEXEC, O_NOFOLLOW and O_NONBLOCK are added: a link is refused,
    /// a pipe without a writer does not wait. Not open on failure, with errno telling why.
    [[nodiscard]] static DRFileDescriptor open(const QString& path, int flags, mode_t mode = 0);

    /// Opens a regular file for reading, without leaving an access time where the system lets us. Not open for anything
    /// else, with the cause in `errno`.
    [[nodiscard]] static DRFileDescriptor openRegularFile(const QString& path);

    DRFileDescriptor(DRFileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    DRFileDescriptor& operator=(DRFileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    DRFileDescriptor(const DRFileDescriptor&) = delete;
    DRFileDescriptor& operator=(const DRFileDescriptor&) = delete;
    ~DRFileDescriptor();

    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }

    /// The system's number of the file, still owned by this object; -1 when not open.
    [[nodiscard]] int number() const { return m_descriptor; }

    /// What the open file is; none when not open.
    [[nodiscard]] std::optional<struct stat> status() const;

    /// Reads up to `size` bytes at the current position. The count read, 0 at the end, -1 on failure.
    [[nodiscard]] qint64 read(char* buffer, qint64 size) const;

    /// Writes all bytes at the current position. False on failure; some may have been written then.
    [[nodiscard]] bool writeAll(const char* bytes, qint64 size) const;

    /// Flushes what was written to disk. False on failure.
    [[nodiscard]] bool flush() const;

private:
    int m_descriptor = -1;
};
