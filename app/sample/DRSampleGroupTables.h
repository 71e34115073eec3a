#pragma once

#include "app/sample/DRSampleMessage.h"
#include "platform/sqlite/DRDatabase.h"

class DRSampleAttachments;

/// Writes groups and their messages into the tables of "sql/iphone_messages_groups.sql", and the messages' files into the
/// backup. Messages are numbered from 1 on, so no others may be in the database before them.
class DRSampleGroupTables {
public:
    /// Database and attachments must outlive this object.
    DRSampleGroupTables(DRDatabase& database, DRSampleAttachments& attachments);

    /// Inserts the group and all that belongs to it. `moment`, in seconds since 1970, is that before its first message.
    /// False on failure.
    [[nodiscard]] bool insertGroup(const DRSampleGroup& group, qint64 moment);

private:
    [[nodiscard]] bool insertMembers(const DRSampleGroup& group);
    [[nodiscard]] bool insertMessage(const DRSampleGroup& group, const DRSampleGroupMessage& message, qint64 date);
    [[nodiscard]] bool insertRow(const DRSampleGroup& group,
                                 const DRSampleGroupMessage& message,
                                 qint64 date,
                                 const QString& address,
                                 const DRSqlValue& association);
    [[nodiscard]] bool insertPiece(qint64 groupId, qint64 flags, const DRSamplePiece& piece);
    [[nodiscard]] bool addFile(qint64 groupId, qint64 flags, const DRSamplePiece& piece);

    DRSampleAttachments& m_attachments;
    DRStatement m_insertGroup;
    DRStatement m_insertMember;
    DRStatement m_insertMessage;
    DRStatement m_insertPiece;
    DRStatement m_insertAttachment;
    qint64 m_messageCount = 0; ///< also the number of the last one
};
