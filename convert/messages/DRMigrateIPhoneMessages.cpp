#include "convert/messages/DRMigrateIPhoneMessages.h"

#include "convert/messages/DRAttachmentFinder.h"
#include "convert/messages/DRConversationReader.h"
#include "convert/messages/DRGroupReader.h"
#include "convert/messages/DRMessageRows.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRLog.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kMessagesDatabase = u"HomeDomain-Library/SMS/sms.db"_s;

/// Moves the chats into the list and counts what they hold.
void addChats(DRChatReading reading, DREntryList& chats, DRMigrateReport& outcome)
{
    for (DRImportedChat& chat : reading.chats) {
        outcome.counts[u"messages"_s] += static_cast<qint64>(chat.messages.size());
        for (const DRImportedMessage& message : chat.messages) {
            outcome.counts[u"attachments"_s] += static_cast<qint64>(message.attachments.size());
        }
        chats.emplace_back(std::move(chat));
    }
    outcome.counts[u"attachments"_s] += reading.losses.attachmentCount();
    reading.losses.tell(outcome);
}

/// Rows that no conversation leads to; the iPhone does not show them either.
qint64 unplacedCount(const DRMessageRows& rows, const DRChatReading& one, const DRChatReading& other)
{
    std::vector<qint64> placed = one.placedMessages;
    placed.insert(placed.end(), other.placedMessages.begin(), other.placedMessages.end());
    std::ranges::sort(placed);
    const auto end = std::unique(placed.begin(), placed.end());
    return static_cast<qint64>(rows.all().size()) - (end - placed.begin());
}

} // namespace

bool DRMigrateIPhoneMessages::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    DRMigrateReport outcome{.counts = {{u"messages"_s, 0}, {u"attachments"_s, 0}}};
    outcome.isNotInBackup = !DRIPhoneBackupFiles::holds(sourcePath(), kMessagesDatabase);
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kMessagesDatabase, services().folders.temporary);
    if (!database) {
        if (!outcome.isNotInBackup) {
            qCWarning(lcMigrate, "The messages database of the backup cannot be opened");
        }
        setReport(std::move(outcome));
        return false;
    }
    const DRAttachmentFinder finder(sourcePath());
    const DRMessageRows rows = DRMessageRows::read(**database);
    DREntryList chats;
    DRChatReading conversations = readConversations(**database, rows, finder);
    DRChatReading groups = readGroups(**database, rows, finder);
    const qint64 unplaced = unplacedCount(rows, conversations, groups);
    if (unplaced > 0) {
        outcome.warnings.append(u"Messages that belong to no conversation, which are not moved: %1"_s.arg(unplaced));
    }
    if (groups.droppedTexts > 0) {
        outcome.warnings.append(
            u"Further texts of messages that consist of several, which are not moved: %1"_s.arg(groups.droppedTexts));
    }
    const bool hasLayout = (*database)->hasTable(u"chat"_s) || (*database)->hasTable(u"msg_group"_s);
    const bool isComplete = hasLayout && rows.isComplete() && conversations.isComplete && groups.isComplete;
    addChats(std::move(conversations), chats, outcome);
    addChats(std::move(groups), chats, outcome);
    if (!isComplete) {
        qCWarning(lcMigrate, "The messages database of the backup cannot be read: %ls",
                  qUtf16Printable((*database)->lastErrorMessage()));
        if (chats.empty()) {
            outcome.skipped.push_back({.what = u"All messages"_s, .why = u"their database cannot be read"_s});
            setReport(std::move(outcome));
            return false;
        }
        outcome.skipped.push_back({.what = u"Some messages"_s, .why = u"the backup's messages database is damaged"_s});
    }
    outcome.found = static_cast<qint64>(chats.size());
    setEntries(std::move(chats));
    setReport(std::move(outcome));
    return true;
}
