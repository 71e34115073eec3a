#pragma once

#include "convert/messages/DRImportedChat.h"

#include <QString>
#include <QStringList>

#include <optional>

class DRDatabase;

/// Reads the messages of the phone's message app back into records. A migration does without; it serves to look at what
/// one has written.
class DRAndroidMessageReader {
public:
    /// `packetFolder` is the app's folder in the expanded packet, which holds "r/app_parts"; `database` is its message
    /// database and must outlive this object.
    DRAndroidMessageReader(QString packetFolder, QString packetID, DRDatabase& database);

    /// The thread's text messages, then its multimedia messages, each in the order of their rows.
    [[nodiscard]] DRImportedChat
    importChatWithAndroidDatabase(qint64 threadId, const QStringList& recipients, const QString& serviceName) const;

    /// A row of `sms` or `pdu`.
    struct Row {
        qint64 id = 0;
        QString text;
        qint64 unixSeconds = 0;
        bool isMultimedia = false; ///< only these have attachments
    };

    /// Taken to be from the owner, for the direction is not read; without an address. An attachment whose file is not in
    /// the packet is left out.
    [[nodiscard]] DRImportedMessage importMessageWithAndroidDatabase(const Row& row) const;

    /// The file that `dataPath`, a path on the phone such as "/data/data/PACKET/app_parts/PART_1", names: what follows the
    /// packet ID, below "r" in the packet's folder. None without the packet ID, and when that is no regular file of the
    /// packet: links and ".." are not followed.
    [[nodiscard]] std::optional<DRIMessageAttachment>
    importAttachmentWithAndroidBackup(const QString& dataPath, const QString& filename, const QString& type) const;

private:
    QString m_packetFolder;
    QString m_packetID;
    DRDatabase& m_database;
};
