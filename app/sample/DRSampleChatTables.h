#pragma once

#include "app/sample/DRSampleMessage.h"
#include "app/sample/DRSampleSettings.h"
#include "platform/sqlite/DRDatabase.h"

#include <QHash>
#include <QSet>

#include <optional>
#include <utility>

class DRSampleAttachments;

/// Writes chats and messages into the tables of "sql/iphone_messages.sql", and the messages' files into the backup.
class DRSampleChatTables {
public:
    /// A chat as its messages need to know it.
    struct Chat {
        qint64 id = 0;
        QString identifier;
        QString service;
        std::vector<qint64> handleIds;
    };

    /// Database and attachments must outlive this object.
    DRSampleChatTables(DRDatabase& database, DRSampleAttachments& attachments, DRSampleSettings settings);

    /// Inserts the chat's row and those of its handles, without messages. Nothing when a statement fails.
    [[nodiscard]] std::optional<Chat> insertChat(const DRSampleChat& chat);

    /// Inserts a message with its attachments. `moment` in seconds since 1970. False on failure.
    [[nodiscard]] bool insertMessage(const Chat& chat, const DRSampleMessage& message, qint64 moment);

private:
    [[nodiscard]] std::optional<qint64> handleId(const DRSampleHandle& handle);
    [[nodiscard]] bool insertAttachment(const DRSampleMessage& message,
                                        const DRSampleAttachment& attachment,
                                        qint64 messageId,
                                        qint64 date);

    DRDatabase& m_database;
    DRSampleAttachments& m_attachments;
    DRSampleSettings m_settings;
    DRStatement m_insertChat;
    DRStatement m_insertHandle;
    DRStatement m_joinHandle;
    DRStatement m_insertMessage;
    DRStatement m_joinMessage;
    DRStatement m_insertAttachment;
    DRStatement m_joinAttachment;
    QHash<std::pair<QString, QString>, qint64> m_handleIds; ///< by address and service
    QSet<QString> m_chatGuids;
    qint64 m_messageCount = 0;
    qint64 m_attachmentCount = 0;
};
