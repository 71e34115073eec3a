#include "convert/messages/DRAndroidMessageReader.h"

#include "platform/core/DRDates.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/sqlite/DRDatabase.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMillisecondsPerSecond = 1000;

} // namespace

DRAndroidMessageReader::DRAndroidMessageReader(QString packetFolder, QString packetID, DRDatabase& database)
    : m_packetFolder(std::move(packetFolder)), m_packetID(std::move(packetID)), m_database(database)
{
}

DRImportedChat DRAndroidMessageReader::importChatWithAndroidDatabase(qint64 threadId,
                                                                     const QStringList& recipients,
                                                                     const QString& serviceName) const
{
    DRImportedChat chat{.serviceName = serviceName, .recipients = recipients, .messages = {}};
    DRResultSet sms = m_database.executeQuery(u"SELECT * FROM sms WHERE thread_id=?"_s, {threadId});
    while (sms.next()) {
        chat.messages.push_back(
            importMessageWithAndroidDatabase({.id = sms.integer("_id"),
                                              .text = sms.string("body"),
                                              .unixSeconds = sms.integer("date") / kMillisecondsPerSecond,
                                              .isMultimedia = false}));
    }
    DRResultSet pdu = m_database.executeQuery(u"SELECT * FROM pdu WHERE thread_id=?"_s, {threadId});
    while (pdu.next()) {
        chat.messages.push_back(importMessageWithAndroidDatabase({.id = pdu.integer("_id"),
                                                                  .text = pdu.string("sub"),
                                                                  .unixSeconds = pdu.integer("date"),
                                                                  .isMultimedia = true}));
    }
    return chat;
}

DRImportedMessage DRAndroidMessageReader::importMessageWithAndroidDatabase(const Row& row) const
{
    DRImportedMessage message{.isFromMe = true,
                              .address = {},
                              .text = row.text,
                              .date = DRDates::fromUnixSeconds(static_cast<double>(row.unixSeconds)),
                              .attachments = {}};
    if (!row.isMultimedia) {
        return message;
    }
    DRResultSet part = m_database.executeQuery(u"SELECT * FROM part WHERE mid=?"_s, {row.id});
    while (part.next()) {
        if (part.isNull("_data")) {
            continue;
        }
        if (auto attachment =
                importAttachmentWithAndroidBackup(part.string("_data"), part.string("cl"), part.string("ct"))) {
            message.attachments.push_back(*std::move(attachment));
        }
    }
    return message;
}

std::optional<DRIMessageAttachment> DRAndroidMessageReader::importAttachmentWithAndroidBackup(const QString& dataPath,
                                                                                              const QString& filename,
                                                                                              const QString& type) const
{
    const QStringList names = dataPath.split(u'/', Qt::SkipEmptyParts);
    const qsizetype app = names.indexOf(m_packetID);
    if (app < 0) {
        return std::nullopt;
    }
    const QString folder = QFileInfo(m_packetFolder).canonicalFilePath();
    const QString path = folder + u"/r/"_s + names.sliced(app + 1).join(u'/');
    if (folder.isEmpty() || QFileInfo(path).canonicalFilePath() != path) {
        return std::nullopt; // not there, or reached through a link or ".."
    }
    const auto status = DRFileDescriptor::openRegularFile(path).status();
    if (!status) {
        return std::nullopt;
    }
    return DRIMessageAttachment{
        .mimeType = {}, .uti = type, .filename = filename, .path = path, .sizeBytes = status->st_size};
}
