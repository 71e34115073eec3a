#include "convert/messages/DRMigrateAndroidMessages.h"

#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMessagesTemplate.h"
#include "convert/messages/DRMessageWriter.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRNeededColumns.h"
#include "platform/sqlite/DRTransaction.h"

#include <QFileInfo>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const std::array kNeeded{
    DRNeededColumns{"canonical_addresses", {"_id", "address"}},
    DRNeededColumns{"threads", {"_id", "message_count", "recipient_ids", "read"}},
    DRNeededColumns{"sms", {"thread_id", "address", "date", "read", "type", "body", "sequence_time"}},
    DRNeededColumns{"pdu", {"thread_id", "date", "msg_box", "ct_t", "m_type", "sequence_time"}},
    DRNeededColumns{"part", {"mid", "seq", "ct", "chset", "cid", "cl", "_data", "text"}},
};

/// Only phones of this maker have it; on others the messages arrive without it.
const DRNeededColumns kOwnList{"vrnm_threads", {"_id", "date", "recipient_ids", "snippet", "snippet_type"}};

/// The first table or column that the database lacks; null when it has all.
QString lackIn(DRDatabase& database)
{
    const QString lack = DRNeededColumns::firstLackIn(database, kNeeded);
    const bool hasOwnList = database.hasTable(QString::fromLatin1(kOwnList.table));
    return lack.isNull() && hasOwnList ? kOwnList.lackIn(database) : lack;
}

qint64 messageCount(const std::vector<const DRImportedChat*>& chats)
{
    qint64 count = 0;
    for (const DRImportedChat* chat : chats) {
        count += static_cast<qint64>(chat->messages.size());
    }
    return count;
}

} // namespace

DRMigrateAndroidMessages::Names DRMigrateAndroidMessages::names() const
{
    return {.app = u"The message app"_s, .records = u"messages"_s};
}

bool DRMigrateAndroidMessages::load()
{
    setEntries(DREntryList());
    if (sourcePath().isEmpty() || targetPath().isEmpty() || packetID().isEmpty()) {
        return false;
    }
    const bool isExpanded = expandPacket();
    if (checkForManifest()) {
        return isExpanded; // a part of the phone's packet must not replace the whole
    }
    qCWarning(lcMigrate, "Mint message error, ignore");
    setIgnoreDataType(true);
    if (isExpanded) {
        skipWithoutManifest(names().app);
    }
    return true;
}

bool DRMigrateAndroidMessages::mergeDataFrom(const DRMigrateDataType& source)
{
    const DREntries entries = source.entries();
    const auto chats = recordsOf<DRImportedChat>(*entries);
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(chats.size());
    if (ignoreDataType()) {
        setReport(std::move(outcome));
        return true;
    }
    setFreshBackupFiles({});
    const QString path = pathInApp(u"db/mmssms.db"_s);
    auto database = prepareDatabase(path, outcome) ? DRDatabase::open(path, DRDatabase::Profile::Phone) : std::nullopt;
    if (!database) {
        skipAll(outcome, u"the phone's message database cannot be opened or replaced"_s);
    }
    const bool isMerged = database && mergeChats(*database, chats, outcome);
    setReport(std::move(outcome));
    return isMerged;
}

bool DRMigrateAndroidMessages::prepareDatabase(const QString& path, DRMigrateReport& outcome) const
{
    const auto hasMessages = DRDatabase::phoneDatabaseHolds(path, u"sms"_s);
    if (!hasMessages || *hasMessages) {
        return hasMessages.has_value(); // what cannot be read now is not replaced
    }
    const bool isLoss = QFileInfo(path).size() > 0;
    if (!writeEmptyMessagesDatabase(path)) {
        return false;
    }
    if (isLoss) {
        outcome.warnings.append(u"The messages on the phone cannot be read and are replaced by the new ones; the "
                                "phone's backup keeps them"_s);
    }
    return true;
}

bool DRMigrateAndroidMessages::mergeChats(DRDatabase& database, const Chats& chats, DRMigrateReport& outcome)
{
    if (const QString lack = lackIn(database); !lack.isNull()) {
        leaveAsItIs(outcome, u"the message database of this phone has no "_s + lack);
        return true;
    }
    if (!database.hasTable(QString::fromLatin1(kOwnList.table))) {
        outcome.warnings.append(u"This phone keeps no list of conversations of its maker (vrnm_threads)"_s);
    }
    DRTransaction transaction(database);
    const QString loss = transaction.isOpen() ? writeChats(database, chats, outcome) : database.lastErrorMessage();
    if (loss.isNull() && outcome.counts[u"messages"_s] == 0 && messageCount(chats) > 0) {
        setIgnoreDataType(true); // each is named; without a commit nothing has changed
        outcome.written = 0;
        return true;
    }
    if (loss.isNull() && transaction.commit()) {
        return true;
    }
    outcome.written = 0;
    outcome.counts.clear();
    skipAll(outcome, loss.isNull() ? database.lastErrorMessage() : loss);
    return false;
}

/// Why the transaction was lost; null when it stands.
QString DRMigrateAndroidMessages::writeChats(DRDatabase& database, const Chats& chats, DRMigrateReport& outcome)
{
    DRMessageWriter writer(database, appFolder(), packetID(),
                           {.chats = static_cast<qint64>(chats.size()), .messages = messageCount(chats)});
    if (!writer.knowsConversations()) {
        return u"the conversations on the phone cannot be read"_s;
    }
    for (const DRImportedChat* chat : chats) {
        writer.insertChatIntoAndroidDatabase(*chat);
        if (writer.isLost()) {
            return writer.reason();
        }
    }
    if (!writer.finish()) {
        return database.lastErrorMessage();
    }
    writer.losses().tell(outcome);
    outcome.written = writer.counts().chats;
    outcome.counts[u"messages"_s] = writer.counts().messages;
    outcome.counts[u"attachments"_s] = writer.counts().attachments;
    setFreshBackupFiles(writer.freshBackupFiles());
    return {};
}
