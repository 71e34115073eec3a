#include "platform/folder_phone/DRNoFollow.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

// O_NONBLOCK: opening a named pipe must not wait for its writer.
constexpr int kFileFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

DRFileDescriptor walk(const DRFileDescriptor& top,
                      const QStringList& names,
                      DRFileDescriptor (*step)(const DRFileDescriptor& folder, const QString& name))
{
    DRFileDescriptor folder(::fcntl(top.number(), F_DUPFD_CLOEXEC, 0));
    for (const QString& name : names) {
        if (!folder.isOpen()) {
            return folder;
        }
        folder = step(folder, name);
    }
    return folder;
}

} // namespace

DRFileDescriptor DRNoFollow::openFile(const DRFileDescriptor& folder, const QString& name)
{
    const QByteArray native = nativePath(name);
    DRFileDescriptor file(::openat(folder.number(), native.constData(), kFileFlags | O_NOATIME));
    if (!file.isOpen() && errno == EPERM) {
        file = DRFileDescriptor(::openat(folder.number(), native.constData(), kFileFlags)); // another owner's file
    }
    const auto status = file.status();
    if (status && !S_ISREG(status->st_mode)) {
        errno = EINVAL;
        return {};
    }
    return file;
}

DRFileDescriptor DRNoFollow::openFolder(const DRFileDescriptor& folder, const QString& name)
{
    return DRFileDescriptor(::openat(folder.number(), nativePath(name).constData(), kFolderFlags));
}

DRFileDescriptor DRNoFollow::openFolder(const QString& path)
{
    return DRFileDescriptor(::open(nativePath(path).constData(), kFolderFlags));
}

DRFileDescriptor DRNoFollow::openOrMakeFolder(const DRFileDescriptor& folder, const QString& name)
{
    constexpr mode_t kOwnerOnly = 0700;
    if (::mkdirat(folder.number(), nativePath(name).constData(), kOwnerOnly) != 0 && errno != EEXIST) {
        return {};
    }
    return openFolder(folder, name);
}

DRFileDescriptor DRNoFollow::openFolders(const DRFileDescriptor& top, const QStringList& names)
{
    return walk(top, names, &DRNoFollow::openFolder);
}

DRFileDescriptor DRNoFollow::openOrMakeFolders(const DRFileDescriptor& top, const QStringList& names)
{
    return walk(top, names, &DRNoFollow::openOrMakeFolder);
}

quint64 DRNoFollow::sizeOf(const DRFileDescriptor& file)
{
    const auto status = file.status();
    return status ? static_cast<quint64>(status->st_size) : 0;
}
