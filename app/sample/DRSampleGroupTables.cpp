#include "app/sample/DRSampleGroupTables.h"

#include "app/sample/DRSampleAttachments.h"
#include "app/sample/DRSampleGuid.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kAlone = 0;       // message.association_id of what stands in one row
constexpr qint64 kTransferred = 5; // madrid_attachment.transfer_state

bool isSent(qint64 flags)
{
    return flags % 2 != 0;
}

/// "/var/mobile/Library/SMS/Parts/0a/12-1.jpg" without the extension.
QString partPath(qint64 groupId, qint64 messageId, int part)
{
    return u"/var/mobile/Library/SMS/Parts/%1/%2-%3"_s.arg(groupId, 2, 16, QChar(u'0')).arg(messageId).arg(part);
}

} // namespace

DRSampleGroupTables::DRSampleGroupTables(DRDatabase& database, DRSampleAttachments& attachments)
    : m_attachments(attachments),
      m_insertGroup(
          database.prepare(u"INSERT INTO msg_group (ROWID, type, newest_message, unread_count) VALUES (?, ?, ?, 0)"_s)),
      m_insertMember(database.prepare(u"INSERT INTO group_member (group_id, address, country) VALUES (?, ?, 'se')"_s)),
      m_insertMessage(database.prepare(
          u"INSERT INTO message (ROWID, guid, text, country, date, is_from_me, address, flags, group_id, "
          "association_id, height, UIFlags, read, is_madrid) VALUES (?, ?, ?, 'se', ?, ?, ?, ?, ?, ?, 0, 4, 1, 0)"_s)),
      m_insertPiece(database.prepare(u"INSERT INTO msg_pieces (message_id, data, part_id, preview_part, content_type, "
                                     "height, version, flags, content_loc) VALUES (?, ?, ?, -1, ?, 0, 1, 0, ?)"_s)),
      m_insertAttachment(database.prepare(
          u"INSERT INTO madrid_attachment (attachment_guid, filename, uti_type, mime_type, transfer_state, "
          "is_incoming, message_id) VALUES (?, ?, ?, ?, ?, ?, ?)"_s))
{
}

bool DRSampleGroupTables::insertGroup(const DRSampleGroup& group, qint64 moment)
{
    if (!insertMembers(group)) {
        return false;
    }
    qint64 date = moment;
    for (const DRSampleGroupMessage& message : group.messages) {
        date += message.secondsLater;
        if (!insertMessage(group, message, message.isBeforeClocks ? 0 : date)) {
            return false;
        }
    }
    DRSqlValue newest; // NULL for a group without messages
    if (!group.messages.empty()) {
        newest = m_messageCount;
    }
    return m_insertGroup.update({group.id, qint64{group.members.size() > 1}, newest});
}

bool DRSampleGroupTables::insertMembers(const DRSampleGroup& group)
{
    return std::all_of(group.members.begin(), group.members.end(), [&](const QString& address) {
        return m_insertMember.update({group.id, address});
    });
}

bool DRSampleGroupTables::insertMessage(const DRSampleGroup& group, const DRSampleGroupMessage& message, qint64 date)
{
    if (message.isForEach) {
        const qint64 association = m_messageCount + 1;
        return std::all_of(group.members.begin(), group.members.end(), [&](const QString& address) {
            return insertRow(group, message, date, address, association);
        });
    }
    // What consists of pieces only names nobody.
    const bool isOnlyPieces = message.text.isNull() && !message.pieces.empty();
    return insertRow(group, message, date, isOnlyPieces ? QString() : group.members.value(message.sender),
                     group.isAssociated ? DRSqlValue(kAlone) : DRSqlValue());
}

bool DRSampleGroupTables::insertRow(const DRSampleGroup& group,
                                    const DRSampleGroupMessage& message,
                                    qint64 date,
                                    const QString& address,
                                    const DRSqlValue& association)
{
    ++m_messageCount;
    return m_insertMessage.update({m_messageCount, sampleGuid(u"old message %1"_s.arg(m_messageCount)), message.text,
                                   date, qint64{isSent(message.flags)}, address, message.flags, group.id,
                                   association}) &&
           std::all_of(message.pieces.begin(), message.pieces.end(),
                       [&](const DRSamplePiece& piece) { return insertPiece(group.id, message.flags, piece); });
}

bool DRSampleGroupTables::insertPiece(qint64 groupId, qint64 flags, const DRSamplePiece& piece)
{
    return m_insertPiece.update({m_messageCount, piece.data.isNull() ? DRSqlValue() : DRSqlValue(piece.data.toUtf8()),
                                 qint64{piece.part}, piece.type, piece.location}) &&
           (piece.kind.isNull() || addFile(groupId, flags, piece));
}

bool DRSampleGroupTables::addFile(qint64 groupId, qint64 flags, const DRSamplePiece& piece)
{
    const DRSampleAttachments::Kind& kind = DRSampleAttachments::kind(piece.kind);
    if (!piece.path.isNull()) {
        return m_attachments.add(piece.path, piece.kind) &&
               m_insertAttachment.update({sampleGuid(piece.path), piece.path, kind.uti.toString(),
                                          kind.mimeType.toString(), kTransferred, qint64{!isSent(flags)},
                                          m_messageCount});
    }
    const QString path = partPath(groupId, m_messageCount, piece.part);
    const QString extension = u'.' + kind.extension.toString();
    return m_attachments.add(path + extension, piece.kind) &&
           (!piece.hasPreview || m_attachments.add(path + u"-preview"_s + extension, piece.kind));
}
