#pragma once

#include "convert/messages/DRIMessageAttachment.h"
#include "model/iphone_backup/DRFilePathList.h"

#include <optional>

/// Finds the files of messages' attachments in an iPhone backup. Every operation answers none when the file is not there
/// or cannot be read.
class DRAttachmentFinder {
public:
    explicit DRAttachmentFinder(const QString& backupPath);

    /// Of the conversation layout. `storedPath` is the path as the database holds it, such as
    /// "~/Library/SMS/Attachments/0a/10/IMG_1.jpg".
    [[nodiscard]] std::optional<DRIMessageAttachment>
    importAttachmentWithIPhoneBackup(const QString& storedPath, const QString& mimeType, const QString& uti) const;

    /// Of the group layout, by the path in `madrid_attachment`.
    [[nodiscard]] std::optional<DRIMessageAttachment> importAttachmentWithMadridBackup(const QString& madridPath,
                                                                                       const QString& type) const;

    /// One piece of a message of the group layout, whose file lies in its group's folder.
    struct Piece {
        qint64 groupId = 0;
        qint64 messageId = 0;
        qint64 partId = 0;
        QString location; ///< the file's name as the message tells it
        QString type;
    };
    [[nodiscard]] std::optional<DRIMessageAttachment> importAttachmentWithMadridBackup(const Piece& piece) const;

private:
    [[nodiscard]] std::optional<DRIMessageAttachment> attachmentAt(const QString& domainPath) const;

    QString m_folder;       ///< of the backup's files, found once for all attachments
    DRFilePathList m_parts; ///< the files of the group layout's folders
};
