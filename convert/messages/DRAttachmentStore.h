#pragma once

#include <optional>

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

struct DRIMessageAttachment;

/// The folder "r/app_parts" of the phone's message app, in which the files of multimedia messages lie under made-up names.
class DRAttachmentStore {
public:
    /// `appFolder` is the app's folder in the expanded packet.
    DRAttachmentStore(QString appFolder, QString packetID);

    /// Copies the attachment's file into the folder, in bounded memory; a video without the boxes that the phone's player
    /// stumbles over. The name under which it lies, a stamp of the message's date that no other file has; none when it
    /// cannot be written, with nothing left.
    [[nodiscard]] std::optional<QString> store(const DRIMessageAttachment& attachment, const QDateTime& date);

    /// Removes the files that were stored after the first `count`.
    void takeBackAfter(qsizetype count);

    /// The stored files as paths in the packet, "apps/PACKET/r/app_parts/NAME".
    [[nodiscard]] const QStringList& files() const { return m_files; }

private:
    [[nodiscard]] QString freeName(const QDateTime& date);

    QString m_appFolder;
    QString m_packetID;
    QStringList m_files;
    QHash<qint64, qint64> m_triedNames; ///< by second: how many names beyond the drawn one were taken
};
