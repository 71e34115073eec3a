#include "platform/folder_phone/DRWholeFile.h"

#include "platform/folder_phone/DRNoFollow.h"

#include <QByteArrayView>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

constexpr int kMaximumDraws = 16;

constexpr QByteArrayView kTemporaryPrefix(".phone-migrate-");

QByteArray drawTemporaryName()
{
    return kTemporaryPrefix.toByteArray() + QByteArray::number(QRandomGenerator::system()->generate64(), 16);
}

/// The names in the folder that begin as those of temporary files; fewer when it cannot be read to the end.
std::vector<QByteArray> temporaryNamesIn(const DRFileDescriptor& folder)
{
    std::vector<QByteArray> names;
    // Opened once more, for a position of its own.
    const int own = ::openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(own), &::closedir);
    if (!entries) {
        ::close(own);
        return names;
    }
    while (const dirent* entry = ::readdir(entries.get())) {
        if (QByteArrayView(entry->d_name).startsWith(kTemporaryPrefix)) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

/// Whoever writes a temporary file holds its lock, so that others can tell it from one that was left behind.
bool lock(const DRFileDescriptor& file)
{
    return file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

} // namespace

void DRWholeFile::removeLeftovers(const DRFileDescriptor& folder)
{
    for (const QByteArray& name : temporaryNamesIn(folder)) {
        const DRFileDescriptor file = DRNoFollow::openFile(folder, QString::fromLatin1(name));
        if (lock(file)) {
            ::unlinkat(folder.number(), name.constData(), 0);
        }
    }
}

std::optional<DRWholeFile> DRWholeFile::beginIn(const DRFileDescriptor& folder)
{
    constexpr mode_t kOwnerOnly = 0600;
    for (int draw = 0; draw < kMaximumDraws; ++draw) {
        QByteArray name = drawTemporaryName();
        DRFileDescriptor file(::openat(folder.number(), name.constData(),
                                       O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
        if (file.isOpen()) {
            static_cast<void>(lock(file)); // without it nobody takes it for a leftover, either
            return DRWholeFile(folder, std::move(name), std::move(file));
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return std::nullopt;
}

DRWholeFile::DRWholeFile(const DRFileDescriptor& folder, QByteArray temporaryName, DRFileDescriptor file)
    : m_folder(&folder), m_temporaryName(std::move(temporaryName)), m_file(std::move(file))
{
}

DRWholeFile::DRWholeFile(DRWholeFile&& other) noexcept
    : m_folder(other.m_folder),
      m_temporaryName(std::exchange(other.m_temporaryName, {})),
      m_file(std::move(other.m_file))
{
}

DRWholeFile::~DRWholeFile()
{
    if (!m_temporaryName.isEmpty()) {
        ::unlinkat(m_folder->number(), m_temporaryName.constData(), 0);
    }
}

bool DRWholeFile::flush() const
{
    return m_file.flush();
}

bool DRWholeFile::placeOver(const QString& name)
{
    const QByteArray target = nativePath(name);
    if (::renameat(m_folder->number(), m_temporaryName.constData(), m_folder->number(), target.constData()) != 0) {
        return false;
    }
    m_temporaryName.clear();
    return true;
}

bool DRWholeFile::placeAs(const QString& name)
{
    const QByteArray target = nativePath(name);
    const int folder = m_folder->number();
    if (::renameat2(folder, m_temporaryName.constData(), folder, target.constData(), RENAME_NOREPLACE) == 0) {
        m_temporaryName.clear();
        return true;
    }
    if (errno != EINVAL) {
        return false;
    }
    // A file system without such a rename. The temporary name is removed at the end.
    return ::linkat(folder, m_temporaryName.constData(), folder, target.constData(), 0) == 0;
}
