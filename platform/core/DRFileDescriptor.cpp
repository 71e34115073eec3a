#include "platform/core/DRFileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

QByteArray nativePath(const QString& path)
{
    return path.contains(QChar(u'\0')) ? QByteArray() : QFile::encodeName(path);
}

std::optional<struct stat> statusWithoutFollowing(const QString& path)
{
    struct stat status = {};
    if (::lstat(nativePath(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

DRFileDescriptor DRFileDescriptor::open(const QString& path, int flags, mode_t mode)
{
    return DRFileDescriptor(
        ::open(nativePath(path).constData(), flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, mode));
}

DRFileDescriptor DRFileDescriptor::openRegularFile(const QString& path)
{
    DRFileDescriptor file = open(path, O_RDONLY | O_NOATIME);
    if (!file.isOpen() && errno == EPERM) {
        file = open(path, O_RDONLY); // only a file's owner may read it without leaving an access time
    }
    const auto status = file.status();
    if (status && !S_ISREG(status->st_mode)) {
        file = DRFileDescriptor();
        errno = EINVAL;
    }
    return status ? std::move(file) : DRFileDescriptor();
}

DRFileDescriptor::~DRFileDescriptor()
{
    if (isOpen()) {
        ::close(m_descriptor);
    }
}

std::optional<struct stat> DRFileDescriptor::status() const
{
    struct stat status = {};
    if (!isOpen() || ::fstat(m_descriptor, &status) != 0) {
        return std::nullopt;
    }
    return status;
}

qint64 DRFileDescriptor::read(char* buffer, qint64 size) const
{
    ssize_t count = -1;
    do {
        count = ::read(m_descriptor, buffer, static_cast<size_t>(size));
    } while (count < 0 && errno == EINTR);
    return count;
}

bool DRFileDescriptor::writeAll(const char* bytes, qint64 size) const
{
    while (size > 0) {
        const ssize_t count = ::write(m_descriptor, bytes, static_cast<size_t>(size));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            bytes += count;
            size -= count;
        }
    }
    return true;
}

bool DRFileDescriptor::flush() const
{
    return ::fsync(m_descriptor) == 0;
}
