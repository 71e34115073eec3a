#include "platform/core/DRFiles.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRPendingFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace {

constexpr qint64 kCopyBlockBytes = qint64{64} * 1024;
constexpr size_t kCopyRangeBytes = size_t{1} << 30;

QString folderOf(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(QChar(u'/'));
    if (slash < 0) {
        return QStringLiteral(".");
    }
    return path.left(std::max<qsizetype>(slash, 1));
}

bool copyByBlocks(const DRFileDescriptor& source, const DRFileDescriptor& target)
{
    std::array<char, kCopyBlockBytes> block{};
    while (true) {
        const qint64 count = source.read(block.data(), kCopyBlockBytes);
        if (count <= 0) {
            return count == 0;
        }
        if (!target.writeAll(block.data(), count)) {
            return false;
        }
    }
}

/// The kernel copies or shares what it can; where it cannot go on, for whatever reason, reading and writing do, and
/// meet the real failure if there is one.
bool copyContent(const DRFileDescriptor& source, const DRFileDescriptor& target)
{
    while (::copy_file_range(source.number(), nullptr, target.number(), nullptr, kCopyRangeBytes, 0) > 0) {
    }
    return copyByBlocks(source, target);
}

} // namespace

bool DRFiles::writeAtomically(const QString& path, const QByteArray& bytes)
{
    DRPendingFile pending(path);
    if (!pending.file().writeAll(bytes.constData(), bytes.size()) || !pending.file().flush() || !pending.publish()) {
        return false;
    }
    // The new name is in place; that it also survives a power cut is tried, but cannot be undone when it fails.
    static_cast<void>(flushToDisk(folderOf(path)));
    return true;
}

std::optional<QByteArray> DRFiles::readRegularFile(const QString& path, qint64 maximumBytes)
{
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(path);
    const auto status = file.status();
    if (!status) {
        return std::nullopt;
    }
    if (status->st_size > maximumBytes) {
        errno = EFBIG;
        return std::nullopt;
    }
    QByteArray bytes(status->st_size, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < bytes.size()) {
        const qint64 count = file.read(bytes.data() + filled, bytes.size() - filled);
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break; // it became shorter meanwhile
        }
        filled += count;
    }
    bytes.truncate(filled);
    return bytes;
}

bool DRFiles::copyToNewFile(const QString& source, const QString& target)
{
    const DRFileDescriptor from = DRFileDescriptor::openRegularFile(source);
    if (!from.isOpen()) {
        return false;
    }
    const DRFileDescriptor to = DRFileDescriptor::open(target, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (!to.isOpen()) {
        return false;
    }
    if (!copyContent(from, to)) {
        ::unlink(nativePath(target).constData());
        return false;
    }
    return true;
}

bool DRFiles::flushToDisk(const QString& path)
{
    const DRFileDescriptor file = DRFileDescriptor::open(path, O_RDONLY);
    return file.isOpen() && file.flush();
}

bool DRFiles::replace(const QString& temporary, const QString& target)
{
    return ::rename(nativePath(temporary).constData(), nativePath(target).constData()) == 0;
}

bool DRFiles::isRegularFile(const QString& path)
{
    const auto status = statusWithoutFollowing(path);
    return status && S_ISREG(status->st_mode);
}

bool DRFiles::removeTree(const QString& path)
{
    const QByteArray native = nativePath(path);
    if (native.isEmpty()) {
        return false;
    }
    std::error_code error;
    std::filesystem::remove_all(std::filesystem::path(native.toStdString()), error);
    return !error;
}
