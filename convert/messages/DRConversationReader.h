#pragma once

#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMessageLosses.h"

#include <vector>

class DRAttachmentFinder;
class DRDatabase;
class DRMessageRows;

/// What a reader found in the messages database.
struct DRChatReading {
    std::vector<DRImportedChat> chats;
    DRMessageLosses losses;             ///< messages and attachments that the chats lack
    qint64 droppedTexts = 0;            ///< further texts of messages, which have room for one
    std::vector<qint64> placedMessages; ///< ROWIDs of the messages that are in a chat or told; may repeat
    bool isComplete = true;             ///< false when a table of the layout is missing or could not be read to its end
};

/// The conversations of the layout with the tables `chat`, `handle`, `chat_handle_join`, `chat_message_join`,
/// `attachment` and `message_attachment_join`, in the order of the chats' rows; those without messages, too. None when the
/// database has no such tables. Each table is read once and joined in memory: rows and their order are those of a query
/// for each chat and each message.
[[nodiscard]] DRChatReading
readConversations(DRDatabase& database, const DRMessageRows& rows, const DRAttachmentFinder& finder);
