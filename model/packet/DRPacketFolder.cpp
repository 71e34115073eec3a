#include "model/packet/DRPacketFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;

DRFileDescriptor openFolderIn(int parent, const QByteArray& name)
{
    return DRFileDescriptor(::openat(parent, name.constData(), kFolderFlags | O_NOFOLLOW));
}

DRFileDescriptor makeFolderIn(int parent, const QByteArray& name)
{
    DRFileDescriptor folder = openFolderIn(parent, name);
    if (folder.isOpen() || errno != ENOENT || ::mkdirat(parent, name.constData(), kFolderMode) != 0) {
        return folder;
    }
    return openFolderIn(parent, name);
}

DRFileDescriptor createFileIn(int parent, const QByteArray& name)
{
    return DRFileDescriptor(
        ::openat(parent, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode));
}

std::vector<QByteArray> folderOf(const std::vector<QByteArray>& path)
{
    return {path.begin(), path.end() - 1};
}

} // namespace

DRPacketFolder::DRPacketFolder(const QString& path) : m_root(::open(nativePath(path).constData(), kFolderFlags)) {}

int DRPacketFolder::folderAt(std::vector<QByteArray> path, Missing missing)
{
    if (path != m_currentPath) {
        DRFileDescriptor folder;
        for (const QByteArray& name : path) {
            const int parent = folder.isOpen() ? folder.number() : m_root.number();
            folder = missing == Missing::Made ? makeFolderIn(parent, name) : openFolderIn(parent, name);
            if (!folder.isOpen()) {
                return -1;
            }
        }
        m_current = std::move(folder);
        m_currentPath = std::move(path);
    }
    return m_current.isOpen() ? m_current.number() : m_root.number();
}

DRFileDescriptor DRPacketFolder::openFile(const std::vector<QByteArray>& path)
{
    if (path.empty()) {
        errno = EISDIR;
        return {};
    }
    const int folder = folderAt(folderOf(path), Missing::Refused);
    if (folder < 0) {
        return {};
    }
    DRFileDescriptor file(
        ::openat(folder, path.back().constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const auto status = file.status();
    if (!status || !S_ISREG(status->st_mode)) {
        errno = EINVAL;
        return {};
    }
    return file;
}

DRFileDescriptor DRPacketFolder::createFile(const std::vector<QByteArray>& path)
{
    if (path.empty()) {
        errno = EISDIR;
        return {};
    }
    const int folder = folderAt(folderOf(path), Missing::Made);
    if (folder < 0) {
        return {};
    }
    DRFileDescriptor file = createFileIn(folder, path.back());
    if (!file.isOpen() && errno == EEXIST && ::unlinkat(folder, path.back().constData(), 0) == 0) {
        file = createFileIn(folder, path.back());
    }
    return file;
}

bool DRPacketFolder::makeFolder(const std::vector<QByteArray>& path)
{
    return folderAt(path, Missing::Made) >= 0;
}
