#include "convert/messages/DRGroupReader.h"

#include "convert/messages/DRAttachmentFinder.h"
#include "convert/messages/DRMessageRows.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kSent = 1; // bit of `flags`

/// A row of `msg_pieces`.
struct Piece {
    qint64 partId = 0;
    QString type;
    QString location; ///< null when missing
    QString text;     ///< of plain text only
};

bool isPlainText(const QString& type)
{
    return type.contains("text/plain"_L1, Qt::CaseInsensitive);
}

/// How a message's parts are shown, which the phone's messages get anew.
bool isPresentation(const QString& type)
{
    return type.contains("application/smil"_L1, Qt::CaseInsensitive);
}

/// The tables beside `message`.
struct Tables {
    QHash<qint64, QStringList> membersByGroup;
    QHash<qint64, std::vector<Piece>> piecesByMessage;
    QHash<qint64, std::vector<const DRMessageRow*>> messagesByGroup; ///< in the order of their ROWIDs
};

QHash<qint64, QStringList> readMembers(DRDatabase& database, bool& isComplete)
{
    QHash<qint64, QStringList> members;
    DRResultSet row = database.executeQuery(u"SELECT * FROM group_member ORDER BY ROWID"_s);
    while (row.next()) {
        if (const QString address = row.string("address"); !row.isNull("group_id") && !address.isNull()) {
            members[row.integer("group_id")].append(address);
        }
    }
    isComplete = isComplete && !row.hasFailed();
    return members;
}

QHash<qint64, std::vector<Piece>> readPieces(DRDatabase& database, bool& isComplete)
{
    QHash<qint64, std::vector<Piece>> pieces;
    if (!database.hasTable(u"msg_pieces"_s)) {
        return pieces;
    }
    DRResultSet row = database.executeQuery(u"SELECT * FROM msg_pieces ORDER BY ROWID"_s);
    while (row.next()) {
        if (row.isNull("message_id")) {
            continue;
        }
        Piece piece{.partId = row.integer("part_id"),
                    .type = row.string("content_type"),
                    .location = row.string("content_loc"),
                    .text = {}};
        if (isPlainText(piece.type)) {
            piece.text = row.string("data");
        }
        pieces[row.integer("message_id")].push_back(std::move(piece));
    }
    isComplete = isComplete && !row.hasFailed();
    return pieces;
}

struct Selection {
    std::vector<const DRMessageRow*> whole;   ///< in the order of their dates
    std::vector<const DRMessageRow*> leftOut; ///< messages that no row of `whole` stands for
};

/// One row of each association, which stands for a message that was split into several, and the rows whose association
/// is 0. That leaves out the rows whose association is NULL, unless a group has no others.
Selection wholeMessages(const std::vector<const DRMessageRow*>& rows)
{
    std::vector<const DRMessageRow*> whole;
    std::vector<const DRMessageRow*> withoutAssociation;
    QSet<qint64> associations;
    for (const DRMessageRow* row : rows) {
        if (!row->hasAssociation) {
            withoutAssociation.push_back(row);
        } else if (row->associationId == 0 || !associations.contains(row->associationId)) {
            associations.insert(row->associationId);
            whole.push_back(row);
        }
    }
    if (whole.empty()) {
        whole.swap(withoutAssociation);
    }
    std::ranges::stable_sort(whole, [](const auto* one, const auto* other) { return one->isBefore(*other); });
    return {.whole = std::move(whole), .leftOut = std::move(withoutAssociation)};
}

/// Makes records of the rows of one database.
class Importer {
public:
    Importer(DRDatabase& database, const Tables& tables, const DRAttachmentFinder& finder, DRChatReading& reading)
        : m_database(database), m_tables(tables), m_finder(finder), m_reading(reading)
    {
    }

    [[nodiscard]] DRImportedChat importChatWithMadridBackup(qint64 groupId, const QStringList& recipients)
    {
        DRImportedChat chat{.serviceName = u"SMS"_s, .recipients = recipients, .messages = {}};
        const Selection rows = wholeMessages(m_tables.messagesByGroup.value(groupId));
        for (const DRMessageRow* row : rows.whole) {
            chat.messages.push_back(importMessageWithMadridBackup(groupId, *row));
        }
        for (const DRMessageRow* row : rows.leftOut) {
            m_reading.losses.addMessage(messageOf(*row), u"it belongs to no association of its group"_s);
        }
        return chat;
    }

private:
    [[nodiscard]] static DRImportedMessage messageOf(const DRMessageRow& row)
    {
        return {.isFromMe = (row.flags & kSent) != 0,
                .address = row.address,
                .text = row.text,
                .date = DRDates::fromUnixSeconds(static_cast<double>(row.date)),
                .attachments = {}};
    }

    [[nodiscard]] DRImportedMessage importMessageWithMadridBackup(qint64 groupId, const DRMessageRow& row)
    {
        DRImportedMessage message = messageOf(row);
        const auto pieces = m_tables.piecesByMessage.constFind(row.rowId);
        if (pieces == m_tables.piecesByMessage.cend()) {
            return message;
        }
        for (const Piece& piece : *pieces) {
            addPiece(message,
                     {.groupId = groupId,
                      .messageId = row.rowId,
                      .partId = piece.partId,
                      .location = piece.location,
                      .type = piece.type},
                     piece.text);
        }
        return message;
    }

    void addPiece(DRImportedMessage& message, const DRAttachmentFinder::Piece& piece, const QString& text)
    {
        if (isPlainText(piece.type) && message.text.isNull()) {
            message.text = text;
            if (!text.isNull()) {
                return;
            }
        }
        if (piece.location.isNull()) {
            if (!text.isEmpty() && text != message.text) {
                ++m_reading.droppedTexts;
            }
            return;
        }
        auto attachment = namedAttachment(piece);
        if (!attachment) {
            attachment = m_finder.importAttachmentWithMadridBackup(piece);
        }
        if (attachment) {
            message.attachments.push_back(*std::move(attachment));
        } else if (!isPresentation(piece.type)) {
            m_reading.losses.addAttachment(piece.location, DRIPhoneBackupFiles::reasonOfMissingFile());
        }
    }

    /// The piece's location is compared as the pattern that it makes when it stands in the statement without quotes,
    /// which is malformed for any usual file name.
    [[nodiscard]] std::optional<DRIMessageAttachment> namedAttachment(const DRAttachmentFinder::Piece& piece)
    {
        for (const QString& filename : filenamesLike(piece.location)) {
            if (auto found = m_finder.importAttachmentWithMadridBackup(filename, piece.type)) {
                return found;
            }
        }
        return std::nullopt;
    }

    /// Asked once for each location: a sender could name the same in thousands of pieces.
    const QStringList& filenamesLike(const QString& location)
    {
        const auto known = m_filenamesByLocation.constFind(location);
        if (known != m_filenamesByLocation.cend()) {
            return *known;
        }
        QStringList filenames;
        if (const auto pattern = DRSqlText::unquotedOperand(location)) {
            DRResultSet row =
                m_database.executeQuery(u"SELECT * FROM madrid_attachment WHERE filename LIKE ?"_s, {*pattern});
            while (row.next()) {
                filenames.append(row.string("filename"));
            }
        }
        return *m_filenamesByLocation.insert(location, filenames);
    }

    DRDatabase& m_database;
    const Tables& m_tables;
    const DRAttachmentFinder& m_finder;
    DRChatReading& m_reading;
    QHash<QString, QStringList> m_filenamesByLocation;
};

QHash<qint64, std::vector<const DRMessageRow*>> messagesByGroup(const DRMessageRows& rows)
{
    QHash<qint64, std::vector<const DRMessageRow*>> messages;
    for (const DRMessageRow& row : rows.all()) {
        if (row.hasGroup) {
            messages[row.groupId].push_back(&row);
        }
    }
    return messages;
}

void tellDroppedGroup(std::size_t messageCount, DRMessageLosses& losses)
{
    if (messageCount > 0) {
        losses.add(u"A conversation of %1 messages"_s.arg(messageCount), u"it has no recipients"_s);
    }
}

} // namespace

DRChatReading readGroups(DRDatabase& database, const DRMessageRows& rows, const DRAttachmentFinder& finder)
{
    DRChatReading reading;
    if (!database.hasTable(u"msg_group"_s)) {
        return reading;
    }
    const Tables tables{.membersByGroup = readMembers(database, reading.isComplete),
                        .piecesByMessage = readPieces(database, reading.isComplete),
                        .messagesByGroup = messagesByGroup(rows)};
    Importer importer(database, tables, finder, reading);
    DRResultSet group = database.executeQuery(u"SELECT * FROM msg_group"_s);
    while (group.next()) {
        const qint64 groupId = group.integer("ROWID");
        for (const DRMessageRow* row : tables.messagesByGroup.value(groupId)) {
            reading.placedMessages.push_back(row->rowId);
        }
        const QStringList members = tables.membersByGroup.value(groupId);
        if (members.isEmpty()) {
            tellDroppedGroup(tables.messagesByGroup.value(groupId).size(), reading.losses);
            continue;
        }
        DRImportedChat chat = importer.importChatWithMadridBackup(groupId, members);
        if (!chat.messages.empty()) {
            reading.chats.push_back(std::move(chat));
        }
    }
    reading.isComplete = reading.isComplete && !group.hasFailed();
    return reading;
}
