#include "platform/folder_phone/DRFolderPhoneRoot.h"

#include "platform/core/DRDigest.h"
#include "platform/folder_phone/DRNoFollow.h"

#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kIdentifierDigits = 16;

QString makeIdentifier(const DRFileDescriptor& folder, const QString& path, ino_t inode)
{
    struct statx status {};
    const bool isKnown =
        ::statx(folder.number(), "", AT_EMPTY_PATH, STATX_BTIME, &status) == 0 && (status.stx_mask & STATX_BTIME) != 0;
    const QString birth = isKnown ? u"%1.%2"_s.arg(status.stx_btime.tv_sec).arg(status.stx_btime.tv_nsec) : path;
    return sha1HexString(u"%1:"_s.arg(inode) + birth).left(kIdentifierDigits);
}

} // namespace

std::optional<DRFolderPhoneRoot> DRFolderPhoneRoot::at(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    const DRFileDescriptor descriptor = DRNoFollow::openFolder(path);
    const auto status = descriptor.status();
    if (!status) {
        return std::nullopt;
    }
    DRFolderPhoneRoot root;
    root.m_path = path;
    root.m_device = status->st_dev;
    root.m_inode = status->st_ino;
    root.m_identifier = makeIdentifier(descriptor, path, status->st_ino);
    return root;
}

bool DRFolderPhoneRoot::isThere() const
{
    const auto status = statusWithoutFollowing(m_path);
    return status && S_ISDIR(status->st_mode) && status->st_dev == m_device && status->st_ino == m_inode;
}

DRFileDescriptor DRFolderPhoneRoot::open() const
{
    DRFileDescriptor folder = DRNoFollow::openFolder(m_path);
    const auto status = folder.status();
    const bool isSame = status && status->st_dev == m_device && status->st_ino == m_inode;
    return isSame ? std::move(folder) : DRFileDescriptor();
}
