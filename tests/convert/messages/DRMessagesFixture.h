#pragma once

#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "tests/convert/DRConverterFixture.h"

#include <QtEndian>

/// An iPhone backup with a messages database and files of attachments.
struct DRMessagesFixture : DRConverterFixture {
    using DRConverterFixture::DRConverterFixture;

    [[nodiscard]] QString database() const { return backedUp(kDatabase); }
    [[nodiscard]] bool makeDatabase(const QString& sql) const { return run(database(), sql); }
    [[nodiscard]] auto iPhoneSide() const { return DRConverterFixture::iPhoneSide<DRMigrateIPhoneMessages>(); }

    /// Puts files of the media domain into the backup and its manifest; each holds its own path.
    [[nodiscard]] bool addFiles(const QStringList& paths) const
    {
        QByteArray manifest = QByteArray::fromHex("6d626462 0500");
        for (const QString& path : paths) {
            const QByteArray bytes = path.toUtf8();
            if (!writeFile(backedUp(QStringLiteral("MediaDomain-") + path), bytes)) {
                return false;
            }
            manifest += string("MediaDomain") + string(bytes) + QByteArray::fromHex("ffff ffff ffff 81a4") +
                        QByteArray(28 + 7, '\0') + static_cast<char>(bytes.size()) + QByteArray::fromHex("03 00");
        }
        return writeFile(backup() + QStringLiteral("/Manifest.mbdb"), manifest);
    }

    static inline const QString kDatabase = QStringLiteral("HomeDomain-Library/SMS/sms.db");

private:
    static QByteArray string(const QByteArray& bytes)
    {
        QByteArray length(2, '\0');
        qToBigEndian(static_cast<quint16>(bytes.size()), length.data());
        return length + bytes;
    }
};

/// A text between quotes, or "-" when missing.
inline QString shown(QString text)
{
    text.replace(QChar(0xFEFF), QStringLiteral("<FEFF>")).replace(QChar(0xFFFC), QStringLiteral("<FFFC>"));
    return text.isNull() ? QStringLiteral("-") : u'\'' + text + u'\'';
}

/// A line for the chat, for each message and for each attachment, whose file's bytes stand last.
inline QStringList linesOf(const DRImportedChat& chat)
{
    QStringList lines{
        QStringLiteral("%1 with %2").arg(shown(chat.serviceName), chat.recipients.join(QStringLiteral(", ")))};
    for (const DRImportedMessage& message : chat.messages) {
        const QString direction = message.isFromMe ? QStringLiteral("to") : QStringLiteral("from");
        lines << QStringLiteral("  %1 %2 at %3: %4")
                     .arg(direction, shown(message.address))
                     .arg(message.date.toMSecsSinceEpoch())
                     .arg(shown(message.text));
        for (const DRIMessageAttachment& attachment : message.attachments) {
            lines << QStringLiteral("    %1 %2 %3 = %4")
                         .arg(shown(attachment.filename), shown(attachment.mimeType), shown(attachment.uti),
                              QString::fromUtf8(attachment.fileData()));
        }
    }
    return lines;
}

inline QStringList linesOf(const DRMigrateIPhoneMessages& messages)
{
    QStringList lines;
    const DREntries entries = messages.entries();
    for (const DRImportedChat* chat : recordsOf<DRImportedChat>(*entries)) {
        lines += linesOf(*chat);
    }
    return lines;
}
