#include "convert/messages/DRAttachmentFinder.h"

#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRFileDescriptor.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString kMediaDomain = u"MediaDomain-"_s;
const QString kPartsFolder = u"MediaDomain-Library/SMS/Parts/"_s;

QString withoutHome(QString path)
{
    return path.remove(u"/var/mobile/"_s);
}

QString lastComponent(const QString& path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

/// The group's folder: its number in hexadecimal, at least two digits.
QString folderOfGroup(qint64 groupId)
{
    constexpr int kHexadecimal = 16;
    const QString digits = QString::number(static_cast<quint32>(groupId), kHexadecimal);
    return groupId < kHexadecimal ? u'0' + digits : digits;
}

} // namespace

DRAttachmentFinder::DRAttachmentFinder(const QString& backupPath)
    : m_folder(DRIPhoneBackupFiles::folderOfFiles(backupPath)),
      m_parts(DRFilePathList::fileListFromMBDB(backupPath + u"/Manifest.mbdb"_s, kPartsFolder))
{
}

std::optional<DRIMessageAttachment> DRAttachmentFinder::importAttachmentWithIPhoneBackup(const QString& storedPath,
                                                                                         const QString& mimeType,
                                                                                         const QString& uti) const
{
    auto attachment = attachmentAt(kMediaDomain + withoutHome(QString(storedPath).remove(u"~/"_s)));
    if (attachment) {
        attachment->mimeType = mimeType;
        attachment->uti = uti;
        attachment->filename = lastComponent(storedPath);
    }
    return attachment;
}

std::optional<DRIMessageAttachment> DRAttachmentFinder::importAttachmentWithMadridBackup(const QString& madridPath,
                                                                                         const QString& type) const
{
    auto attachment = attachmentAt(kMediaDomain + withoutHome(madridPath));
    if (attachment) {
        attachment->mimeType = type;
        attachment->filename = lastComponent(madridPath);
    }
    return attachment;
}

std::optional<DRIMessageAttachment> DRAttachmentFinder::importAttachmentWithMadridBackup(const Piece& piece) const
{
    const QString folder = kPartsFolder + folderOfGroup(piece.groupId);
    const QString stem = u"%1-%2"_s.arg(piece.messageId).arg(piece.partId);
    const QString domainPath = m_parts.findInPath(folder, stem, false);
    if (domainPath.isEmpty()) {
        return std::nullopt;
    }
    auto attachment = attachmentAt(domainPath);
    if (attachment) {
        attachment->mimeType = piece.type;
        attachment->filename = piece.location;
    }
    return attachment;
}

/// Opened once, so that a file that cannot be read is dropped now and not in the middle of the merge.
std::optional<DRIMessageAttachment> DRAttachmentFinder::attachmentAt(const QString& domainPath) const
{
    const QString path = DRIPhoneBackupFiles::placeInFolder(m_folder, domainPath);
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(path);
    if (!file.isOpen()) {
        return std::nullopt;
    }
    return DRIMessageAttachment{.path = path, .sizeBytes = ::lseek(file.number(), 0, SEEK_END)};
}
