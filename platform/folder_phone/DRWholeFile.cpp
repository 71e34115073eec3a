#include "platform/folder_phone/DRWholeFile.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kMaximumDraws = 16;

QByteArray drawTemporaryName()
{
    return ".phone-migrate-" + QByteArray::number(QRandomGenerator::system()->generate64(), 16);
}

} // namespace

std::optional<DRWholeFile> DRWholeFile::beginIn(const DRFileDescriptor& folder)
{
    constexpr mode_t kOwnerOnly = 0600;
    for (int draw = 0; draw < kMaximumDraws; ++draw) {
        QByteArray name = drawTemporaryName();
        DRFileDescriptor file(::openat(folder.number(), name.constData(),
                                       O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
        if (file.isOpen()) {
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
