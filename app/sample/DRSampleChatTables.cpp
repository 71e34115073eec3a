#include "app/sample/DRSampleChatTables.h"

#include "app/sample/DRSampleAttachments.h"
#include "app/sample/DRSampleGuid.h"
#include "platform/core/DRDates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kWithOne = 45; // chat.style: with one person
constexpr qint64 kWithMany = 43;
constexpr qint64 kTransferred = 5; // attachment.transfer_state
constexpr qint64 kUnreadSeconds = 7'200;

QString accountOf(const QString& service)
{
    return service == u"SMS"_s ? u"P:+15550100100"_s : u"E:robin@example.com"_s;
}

/// What was sent names the other side only when it is a single one.
qint64 handleIdOf(const DRSampleChatTables::Chat& chat, const DRSampleMessage& message)
{
    const auto place = static_cast<std::size_t>(message.isFromMe ? 0 : message.sender);
    const bool isNamed = message.isFromMe ? chat.handleIds.size() == 1 : place < chat.handleIds.size();
    return isNamed ? chat.handleIds[place] : 0;
}

/// A folder of its own for each file.
QString storedPath(const DRSampleAttachment& attachment, qint64 number, const QString& guid)
{
    return attachment.root +
           u"Library/SMS/Attachments/%1/%2/"_s.arg(guid.first(2).toLower()).arg(number % 16, 2, 10, QChar(u'0')) +
           guid + u'/' + attachment.name;
}

/// Null when neither the attachment nor its kind has one.
QString mimeTypeOf(const DRSampleAttachment& attachment, const DRSampleAttachments::Kind& kind)
{
    return attachment.mimeType.isNull() && !kind.mimeType.isNull() ? kind.mimeType.toString() : attachment.mimeType;
}

} // namespace

DRSampleChatTables::DRSampleChatTables(DRDatabase& database,
                                       DRSampleAttachments& attachments,
                                       DRSampleSettings settings)
    : m_database(database),
      m_attachments(attachments),
      m_settings(std::move(settings)),
      m_insertChat(database.prepare(
          u"INSERT INTO chat (guid, style, state, account_id, chat_identifier, service_name, room_name, account_login) "
          "VALUES (?, ?, 3, ?, ?, ?, ?, ?)"_s)),
      m_insertHandle(database.prepare(
          u"INSERT INTO handle (id, country, service, uncanonicalized_id) VALUES (?1, 'se', ?2, ?1)"_s)),
      m_joinHandle(database.prepare(u"INSERT INTO chat_handle_join VALUES (?, ?)"_s)),
      m_insertMessage(database.prepare(
          u"INSERT INTO message (guid, text, handle_id, country, version, service, account, date, date_read, "
          "date_delivered, is_delivered, is_finished, is_from_me, is_read, is_sent, cache_has_attachments, "
          "cache_roomnames) VALUES (?1, ?2, ?3, 'se', 10, ?4, ?5, ?6, ?7, ?8, ?9, 1, ?9, ?10, ?9, ?11, ?12)"_s)),
      m_joinMessage(database.prepare(u"INSERT INTO chat_message_join VALUES (?, ?)"_s)),
      m_insertAttachment(database.prepare(
          u"INSERT INTO attachment (guid, created_date, start_date, filename, uti, mime_type, transfer_state, "
          "is_outgoing, transfer_name, total_bytes) VALUES (?1, ?2, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)"_s)),
      m_joinAttachment(database.prepare(u"INSERT INTO message_attachment_join VALUES (?, ?)"_s))
{
}

std::optional<DRSampleChatTables::Chat> DRSampleChatTables::insertChat(const DRSampleChat& chat)
{
    const bool isRoom = chat.identifier.startsWith(u"chat"_s);
    QString guid = u"%1;%2;%3"_s.arg(chat.service, isRoom ? u"+"_s : u"-"_s, chat.identifier);
    if (m_chatGuids.contains(guid)) {
        guid += u";%1"_s.arg(m_chatGuids.size());
    }
    m_chatGuids.insert(guid);
    const QString account = accountOf(chat.service);
    if (!m_insertChat.update({guid, isRoom ? kWithMany : kWithOne, sampleGuid(account), chat.identifier, chat.service,
                              isRoom ? chat.identifier : QString(), account})) {
        return std::nullopt;
    }
    Chat inserted{
        .id = m_database.lastInsertRowId(), .identifier = chat.identifier, .service = chat.service, .handleIds = {}};
    for (const DRSampleHandle& handle : chat.handles) {
        const auto id = handleId(handle);
        if (!id || !m_joinHandle.update({inserted.id, *id})) {
            return std::nullopt;
        }
        inserted.handleIds.push_back(*id);
    }
    return inserted;
}

bool DRSampleChatTables::insertMessage(const Chat& chat, const DRSampleMessage& message, qint64 moment)
{
    const qint64 date = message.isBeforeClocks ? 0 : moment - DRDates::kReferenceDateUnixSeconds;
    const bool isRecent = moment > m_settings.moment.toSecsSinceEpoch() - kUnreadSeconds;
    const bool isRead = !message.isFromMe && !isRecent;
    const bool isRoom = chat.handleIds.size() > 1;
    if (!m_insertMessage.update({sampleGuid(u"message %1"_s.arg(++m_messageCount)), message.text,
                                 handleIdOf(chat, message), chat.service, accountOf(chat.service), date,
                                 isRead ? date + 5 : 0, message.isFromMe ? date + 1 : 0, qint64{message.isFromMe},
                                 qint64{isRead}, qint64{!message.attachments.empty()},
                                 isRoom ? chat.identifier : QString()})) {
        return false;
    }
    const qint64 messageId = m_database.lastInsertRowId();
    return m_joinMessage.update({chat.id, messageId}) &&
           std::all_of(message.attachments.begin(), message.attachments.end(),
                       [&](const auto& attachment) { return insertAttachment(message, attachment, messageId, date); });
}

std::optional<qint64> DRSampleChatTables::handleId(const DRSampleHandle& handle)
{
    const std::pair key{handle.id, handle.service};
    if (const auto known = m_handleIds.constFind(key); known != m_handleIds.constEnd()) {
        return *known;
    }
    if (!m_insertHandle.update({handle.id, handle.service})) {
        return std::nullopt;
    }
    return m_handleIds[key] = m_database.lastInsertRowId();
}

bool DRSampleChatTables::insertAttachment(const DRSampleMessage& message,
                                          const DRSampleAttachment& attachment,
                                          qint64 messageId,
                                          qint64 date)
{
    const DRSampleAttachments::Kind& kind = DRSampleAttachments::kind(attachment.kind);
    const QString guid = sampleGuid(u"attachment %1"_s.arg(++m_attachmentCount));
    const QString path = storedPath(attachment, m_attachmentCount, guid);
    const auto size = m_attachments.add(path, attachment.kind);
    return size &&
           m_insertAttachment.update({guid, date, path, kind.uti.toString(), mimeTypeOf(attachment, kind), kTransferred,
                                      qint64{message.isFromMe}, attachment.name, *size}) &&
           m_joinAttachment.update({messageId, m_database.lastInsertRowId()});
}
