#pragma once

#include <QByteArray>
#include <QString>

/// A file that came with a message. Its bytes stay where they are until they are copied: those of all attachments together
/// would not fit into memory.
struct DRIMessageAttachment {
    QString mimeType;     ///< such as "image/jpeg"; null when unknown
    QString uti;          ///< the iPhone's uniform type identifier; null when unknown
    QString filename;     ///< how the file was called, without folders
    QString path;         ///< the regular file on this computer that holds the bytes
    qint64 sizeBytes = 0; ///< of that file when it was found

    bool operator==(const DRIMessageAttachment&) const = default;

    /// The bytes of the file; null when it cannot be read any more.
    [[nodiscard]] QByteArray fileData() const;
};
