#include "convert/messages/DRConversationReader.h"

#include "convert/messages/DRAttachmentFinder.h"
#include "convert/messages/DRMessageRows.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"

#include <QHash>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Pairs of row numbers, sorted and each once: what "IN (SELECT ...)" makes of a join table.
class Join {
public:
    static Join read(DRDatabase& database, const QString& table, const char* from, const char* to, bool& isComplete)
    {
        Join join;
        DRResultSet row = database.executeQuery(u"SELECT * FROM "_s + table);
        const int fromColumn = row.columnIndex(from).value_or(-1);
        const int toColumn = row.columnIndex(to).value_or(-1);
        while (row.next()) {
            if (!row.isNullAt(fromColumn) && !row.isNullAt(toColumn)) {
                join.m_pairs.emplace_back(row.integerAt(fromColumn), row.integerAt(toColumn));
            }
        }
        isComplete = isComplete && !row.hasFailed();
        std::ranges::sort(join.m_pairs);
        join.m_pairs.erase(std::unique(join.m_pairs.begin(), join.m_pairs.end()), join.m_pairs.end());
        return join;
    }

    using Pair = std::pair<qint64, qint64>;

    /// The pairs that begin with this row.
    [[nodiscard]] std::span<const Pair> of(qint64 row) const
    {
        const auto first = std::ranges::lower_bound(m_pairs, row, {}, &Pair::first);
        return {first, std::find_if(first, m_pairs.end(), [row](const Pair& pair) { return pair.first != row; })};
    }

private:
    std::vector<Pair> m_pairs;
};

struct AttachmentRow {
    QString filename; ///< null when missing
    QString mimeType;
    QString uti;
};

/// The tables beside `message`.
struct Tables {
    QHash<qint64, QString> handles;
    QHash<qint64, AttachmentRow> attachments;
    Join handlesOfChat;
    Join messagesOfChat;
    Join attachmentsOfMessage;
};

QHash<qint64, QString> readHandles(DRDatabase& database, bool& isComplete)
{
    QHash<qint64, QString> handles;
    DRResultSet row = database.executeQuery(u"SELECT * FROM handle"_s);
    while (row.next()) {
        handles.insert(row.integer("ROWID"), row.string("id"));
    }
    isComplete = isComplete && !row.hasFailed();
    return handles;
}

QHash<qint64, AttachmentRow> readAttachments(DRDatabase& database, bool& isComplete)
{
    QHash<qint64, AttachmentRow> attachments;
    DRResultSet row = database.executeQuery(u"SELECT * FROM attachment"_s);
    while (row.next()) {
        attachments.insert(
            row.integer("ROWID"),
            {.filename = row.string("filename"), .mimeType = row.string("mime_type"), .uti = row.string("uti")});
    }
    isComplete = isComplete && !row.hasFailed();
    return attachments;
}

/// Makes records of the rows of one database.
class Importer {
public:
    Importer(const Tables& tables, const DRMessageRows& rows, const DRAttachmentFinder& finder, DRChatReading& reading)
        : m_tables(tables), m_rows(rows), m_finder(finder), m_reading(reading)
    {
    }

    [[nodiscard]] DRImportedChat
    importChatWithIPhoneBackup(qint64 chatId, const QString& identifier, const QString& serviceName) const
    {
        DRImportedChat chat{.serviceName = serviceName, .recipients = recipientsOf(chatId), .messages = {}};
        if (chat.recipients.isEmpty()) {
            chat.recipients.append(identifier);
        }
        std::vector<const DRMessageRow*> rows;
        for (const auto& [ignored, messageId] : m_tables.messagesOfChat.of(chatId)) {
            if (const DRMessageRow* row = m_rows.find(messageId)) {
                rows.push_back(row);
                m_reading.placedMessages.push_back(messageId);
            }
        }
        std::ranges::stable_sort(rows, [](const auto* one, const auto* other) { return one->isBefore(*other); });
        chat.messages.reserve(rows.size());
        for (const DRMessageRow* row : rows) {
            chat.messages.push_back(importMessageWithIPhoneBackup(*row, chat.recipients.front()));
        }
        return chat;
    }

private:
    [[nodiscard]] QStringList recipientsOf(qint64 chatId) const
    {
        QStringList recipients;
        for (const auto& [ignored, handleId] : m_tables.handlesOfChat.of(chatId)) {
            if (const QString address = m_tables.handles.value(handleId); !address.isNull()) {
                recipients.append(address);
            }
        }
        return recipients;
    }

    [[nodiscard]] DRImportedMessage importMessageWithIPhoneBackup(const DRMessageRow& row,
                                                                  const QString& firstRecipient) const
    {
        static constexpr QChar kPlaceOfAttachment = u'\uFFFC';
        QString text = row.text;
        if (text.contains(kPlaceOfAttachment)) {
            text.remove(kPlaceOfAttachment);
        }
        return {.isFromMe = row.isFromMe,
                .address = m_tables.handles.value(row.handleId, firstRecipient),
                .text = std::move(text),
                .date = DRDates::fromReferenceSeconds(static_cast<double>(row.date)),
                .attachments = attachmentsOf(row.rowId)};
    }

    [[nodiscard]] std::vector<DRIMessageAttachment> attachmentsOf(qint64 messageId) const
    {
        std::vector<DRIMessageAttachment> attachments;
        for (const auto& [ignored, attachmentId] : m_tables.attachmentsOfMessage.of(messageId)) {
            const auto row = m_tables.attachments.constFind(attachmentId);
            if (row == m_tables.attachments.cend()) {
                continue;
            }
            auto found = row->filename.isNull()
                             ? std::nullopt
                             : m_finder.importAttachmentWithIPhoneBackup(row->filename, row->mimeType, row->uti);
            if (found) {
                attachments.push_back(*std::move(found));
            } else {
                m_reading.losses.addAttachment(row->filename, DRIPhoneBackupFiles::reasonOfMissingFile());
            }
        }
        return attachments;
    }

    const Tables& m_tables;
    const DRMessageRows& m_rows;
    const DRAttachmentFinder& m_finder;
    DRChatReading& m_reading;
};

} // namespace

DRChatReading readConversations(DRDatabase& database, const DRMessageRows& rows, const DRAttachmentFinder& finder)
{
    DRChatReading reading;
    if (!database.hasTable(u"chat"_s)) {
        return reading;
    }
    bool& isComplete = reading.isComplete;
    const Tables tables{
        .handles = readHandles(database, isComplete),
        .attachments = readAttachments(database, isComplete),
        .handlesOfChat = Join::read(database, u"chat_handle_join"_s, "chat_id", "handle_id", isComplete),
        .messagesOfChat = Join::read(database, u"chat_message_join"_s, "chat_id", "message_id", isComplete),
        .attachmentsOfMessage =
            Join::read(database, u"message_attachment_join"_s, "message_id", "attachment_id", isComplete),
    };
    const Importer importer(tables, rows, finder, reading);
    DRResultSet chat = database.executeQuery(u"SELECT * FROM chat"_s);
    while (chat.next()) {
        reading.chats.push_back(importer.importChatWithIPhoneBackup(
            chat.integer("ROWID"), chat.string("chat_identifier"), chat.string("service_name")));
    }
    isComplete = isComplete && !chat.hasFailed();
    return reading;
}
