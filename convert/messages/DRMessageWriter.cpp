#include "convert/messages/DRMessageWriter.h"

#include "convert/messages/DRMessageTriggers.h"
#include "convert/messages/DRSmilDocument.h"
#include "platform/sqlite/DRSqlText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Values of the phone's columns.
constexpr qint64 kRead = 1;
constexpr qint64 kReceivedText = 1;
constexpr qint64 kSentText = 0; // kept: the phone shows such rows as sent
constexpr qint64 kReceivedBox = 1;
constexpr qint64 kSentBox = 2;
constexpr qint64 kSendRequest = 128;
constexpr qint64 kRetrieveConfirmation = 132;
constexpr qint64 kUtf8 = 106;
constexpr qint64 kSmilSequence = -1;
constexpr qint64 kMillisecondsPerSecond = 1000;

const QString kMultipart = u"application/vnd.wap.multipart.related"_s;
const QString kSmilType = u"application/smil"_s;
const QString kTextType = u"text/plain"_s;

/// The temporary indexes, for what the triggers ask at each firing. Their pages stay behind, unused, and the file larger by 8 %:
/// with the other columns that are asked for it would be 10 %, and no faster.
struct Index {
    QString name;
    QString columns;
};
const Index kSmsIndex{u"phone_migrate_sms"_s, u"sms (thread_id)"_s};
const Index kPduIndex{u"phone_migrate_pdu"_s, u"pdu (thread_id)"_s};

qint64 rowCount(DRDatabase& database)
{
    DRResultSet row = database.executeQuery(u"SELECT (SELECT COUNT(*) FROM sms) + (SELECT COUNT(*) FROM pdu)"_s);
    return row.next() ? row.integerAt(0) : 0;
}

/// Without indexes each firing of triggers searches through all rows, on average through those that stood already and half of
/// the new ones. Measured, to index a row costs as much as to search eight (0.6 us and 75 ns).
bool wouldIndexesPay(qint64 oldRows, qint64 newRows, qint64 firings)
{
    constexpr double kRowsSearchedPerIndexedRow = 8.0;
    const auto old = static_cast<double>(oldRows);
    const auto fresh = static_cast<double>(newRows);
    return static_cast<double>(firings) * (old + fresh / 2.0) > kRowsSearchedPerIndexedRow * (old + fresh);
}

qint64 milliseconds(const DRImportedMessage& message)
{
    return message.date.toMSecsSinceEpoch();
}

/// The file's name in a part's content ID: without its extension.
QString stemOf(const QString& filename)
{
    const qsizetype dot = filename.lastIndexOf(u'.');
    return dot > 0 ? filename.left(dot) : filename;
}

} // namespace

DRMessageWriter::DRMessageWriter(DRDatabase& database,
                                 const QString& appFolder,
                                 const QString& packetID,
                                 const Amount& amount)
    : m_database(database),
      m_threads(database),
      m_attachments(appFolder, packetID),
      m_packetID(packetID),
      m_mayLeaveOutTriggers(DRMessageTriggers::onlyRecompute(database)),
      m_insertSms(database.prepare(u"INSERT INTO sms (thread_id, address, date, read, type, body, sequence_time) "
                                   "VALUES (?, ?, ?, ?, ?, ?, ?)"_s)),
      m_insertPdu(database.prepare(u"INSERT INTO pdu (thread_id, date, msg_box, ct_t, m_type, sequence_time) "
                                   "VALUES (?, ?, ?, ?, ?, ?)"_s)),
      m_insertAttachmentPart(database.prepare(u"INSERT INTO part (mid, ct, cid, cl, _data) VALUES (?, ?, ?, ?, ?)"_s)),
      m_insertTextPart(
          database.prepare(u"INSERT INTO part (mid, ct, chset, cid, cl, text) VALUES (?, ?, ?, ?, ?, ?)"_s)),
      m_insertSmilPart(database.prepare(u"INSERT INTO part (mid, seq, ct, cid, cl, text) VALUES (?, ?, ?, ?, ?, ?)"_s))
{
    const qint64 firings = m_mayLeaveOutTriggers ? amount.chats : amount.messages;
    if (wouldIndexesPay(rowCount(database), amount.messages, firings)) {
        m_hasIndexes = createIndexes();
    }
}

DRMessageWriter::~DRMessageWriter()
{
    fire(true);
    static_cast<void>(finish());
}

bool DRMessageWriter::createIndexes()
{
    bool isAnyMade = false;
    for (const Index& index : {kSmsIndex, kPduIndex}) {
        isAnyMade = m_database.executeUpdate(u"CREATE INDEX %1 ON %2"_s.arg(index.name, index.columns)) || isAnyMade;
    }
    return isAnyMade;
}

bool DRMessageWriter::finish()
{
    if (!m_hasIndexes) {
        return true;
    }
    m_hasIndexes = false;
    bool areGone = true;
    for (const Index& index : {kSmsIndex, kPduIndex}) {
        areGone = m_database.executeUpdate(u"DROP INDEX IF EXISTS "_s + index.name) && areGone;
    }
    return areGone;
}

void DRMessageWriter::fire(bool isOn)
{
    if (m_isFiring != isOn) {
        m_isFiring = isOn;
        static_cast<void>(m_database.setTriggers(isOn ? DRDatabase::Triggers::On : DRDatabase::Triggers::Off));
    }
}

void DRMessageWriter::insertChatIntoAndroidDatabase(const DRImportedChat& chat)
{
    fire(true);
    m_reason.clear();
    const QString recipientIds = m_threads.recipientIds(chat.recipients);
    const auto thread = recipientIds.isEmpty() ? std::nullopt : m_threads.threadFor(recipientIds);
    if (thread) {
        finishChat(chat, *thread, insertAllMessages(chat, *thread));
    } else if (!chat.messages.empty()) {
        m_losses.add(
            u"A conversation of %1 messages with %2"_s.arg(chat.messages.size()).arg(chat.recipients.join(u", "_s)),
            chat.recipients.isEmpty() ? u"it has no recipients"_s : m_database.lastErrorMessage());
    }
    if (isLost() && m_reason.isNull()) {
        m_reason = m_database.lastErrorMessage();
    }
}

/// A row that was to fire and is not there leaves what it would have shown to others: then every row has to.
DRMessageWriter::Outcome DRMessageWriter::insertAllMessages(const DRImportedChat& chat,
                                                            const DRThreadDirectory::Thread& thread)
{
    const qsizetype storedFiles = m_attachments.files().size();
    if (!m_mayLeaveOutTriggers || !m_database.executeUpdate(u"SAVEPOINT chat"_s)) {
        return insertMessages(chat, thread, Firing::Every);
    }
    Outcome outcome = insertMessages(chat, thread, Firing::Remaining);
    if (isLost()) {
        return outcome;
    }
    if (!outcome.isExact && m_database.executeUpdate(u"ROLLBACK TO chat"_s)) {
        m_attachments.takeBackAfter(storedFiles);
        outcome = insertMessages(chat, thread, Firing::Every);
    }
    static_cast<void>(m_database.executeUpdate(u"RELEASE chat"_s));
    fire(true);
    return outcome;
}

/// Runs an insert; false when no row came of it, with the reason in `m_reason`.
bool DRMessageWriter::insertRow(DRStatement& statement, const DRSqlValues& values)
{
    if (!statement.update(values)) {
        m_reason = m_database.lastErrorMessage();
        return false;
    }
    if (m_database.changedRowCount() != 1) {
        m_reason = u"the phone's database refused it"_s;
        return false;
    }
    return true;
}

DRMessageWriter::Outcome
DRMessageWriter::insertMessages(const DRImportedChat& chat, const DRThreadDirectory::Thread& thread, Firing firing)
{
    const auto isMultimedia = [](const DRImportedMessage& message) { return !message.attachments.empty(); };
    const auto lastMultimedia = std::find_if(chat.messages.rbegin(), chat.messages.rend(), isMultimedia);
    const auto lastText = std::find_if_not(chat.messages.rbegin(), chat.messages.rend(), isMultimedia);
    const auto isLast = [&](const DRImportedMessage& message) {
        return (lastMultimedia != chat.messages.rend() && &message == &*lastMultimedia) ||
               (lastText != chat.messages.rend() && &message == &*lastText);
    };
    m_firing = firing;
    m_firedParts.clear();
    Outcome outcome{.newestDate = thread.newestDate};
    for (const DRImportedMessage& message : chat.messages) {
        const bool isNeeded = firing == Firing::Every || isLast(message);
        fire(isNeeded);
        outcome.newestDate = std::max(outcome.newestDate, milliseconds(message));
        if (insertMessageIntoAndroidDatabase(message, thread.id, outcome)) {
            ++outcome.inserted;
            outcome.snippet = message.text;
            continue;
        }
        if (isLost()) { // what follows would stand alone
            return outcome;
        }
        outcome.losses.addMessage(message, m_reason);
        outcome.isExact = outcome.isExact && !isNeeded;
    }
    return outcome;
}

bool DRMessageWriter::insertMessageIntoAndroidDatabase(const DRImportedMessage& message,
                                                       qint64 threadId,
                                                       Outcome& outcome)
{
    return message.attachments.empty() ? insertTextMessage(message, threadId)
                                       : insertMMSIntoAndroidDatabase(message, threadId, outcome);
}

bool DRMessageWriter::insertTextMessage(const DRImportedMessage& message, qint64 threadId)
{
    const qint64 moment = milliseconds(message);
    const bool isInserted =
        insertRow(m_insertSms, {threadId, message.address, moment, kRead, message.isFromMe ? kSentText : kReceivedText,
                                message.text, moment});
    if (isInserted) {
        m_threads.noteTextMessage(threadId, moment);
    }
    return isInserted;
}

bool DRMessageWriter::insertMMSIntoAndroidDatabase(const DRImportedMessage& message, qint64 threadId, Outcome& outcome)
{
    const qint64 seconds = milliseconds(message) / kMillisecondsPerSecond;
    if (!insertRow(m_insertPdu,
                   {threadId, seconds, message.isFromMe ? kSentBox : kReceivedBox, kMultipart,
                    message.isFromMe ? kSendRequest : kRetrieveConfirmation, seconds * kMillisecondsPerSecond})) {
        return false;
    }
    const qint64 pduId = m_database.lastInsertRowId();
    std::vector<DRSmilDocument::Item> shown;
    for (const DRIMessageAttachment& attachment : message.attachments) {
        if (insertAttachmentIntoAndroidDatabase(attachment, pduId, message.date, outcome)) {
            shown.push_back({.mimeType = attachment.mimeType, .filename = attachment.filename});
        }
    }
    const QString text = message.text.isNull() ? u" "_s : message.text;
    if (!insertPart(m_insertTextPart, kTextType, {pduId, kTextType, kUtf8, u"<text_0>"_s, u"text_0.txt"_s, text},
                    outcome)) {
        outcome.losses.addMessage(message, u"its text cannot be written: "_s + m_reason);
    }
    if (!insertPart(m_insertSmilPart, kSmilType,
                    {pduId, kSmilSequence, kSmilType, u"<smil>"_s, u"smil.xml"_s, DRSmilDocument::documentOf(shown)},
                    outcome)) {
        outcome.losses.addMessage(message, u"its layout cannot be written: "_s + m_reason);
    }
    return true;
}

bool DRMessageWriter::insertAttachmentIntoAndroidDatabase(const DRIMessageAttachment& attachment,
                                                          qint64 pduId,
                                                          const QDateTime& date,
                                                          Outcome& outcome)
{
    const auto name = m_attachments.store(attachment, date);
    if (!name) {
        outcome.losses.addAttachment(attachment.filename, u"its file cannot be copied"_s);
        return false;
    }
    const QString data = u"/data/data/%1/app_parts/%2"_s.arg(m_packetID, *name);
    const bool isInserted = insertPart(
        m_insertAttachmentPart, attachment.mimeType,
        {pduId, attachment.mimeType, u"<%1>"_s.arg(stemOf(attachment.filename)), attachment.filename, data}, outcome);
    if (!isInserted) {
        outcome.losses.addAttachment(attachment.filename, m_reason);
    }
    outcome.attachments += isInserted ? 1 : 0;
    return isInserted;
}

/// The triggers on parts do the same for every part of one type in a conversation: once is enough. A missing type is
/// another one than an empty one.
bool DRMessageWriter::insertPart(DRStatement& statement,
                                 const QString& type,
                                 const DRSqlValues& values,
                                 Outcome& outcome)
{
    const std::pair key{type.isNull(), type};
    fire(m_firing == Firing::Every || !m_firedParts.contains(key));
    if (insertRow(statement, values)) {
        m_firedParts.insert(key);
        return true;
    }
    outcome.isExact = outcome.isExact && !m_isFiring;
    return false;
}

void DRMessageWriter::finishChat(const DRImportedChat& chat,
                                 const DRThreadDirectory::Thread& thread,
                                 const Outcome& outcome)
{
    m_losses.addAll(outcome.losses);
    m_counts.chats += outcome.inserted > 0 || chat.messages.empty() ? 1 : 0;
    m_counts.messages += outcome.inserted;
    m_counts.attachments += outcome.attachments;
    if (outcome.inserted == 0 || isLost()) {
        return;
    }
    if (!m_database.executeUpdate(u"UPDATE threads SET message_count=?, read=1 WHERE _id=?"_s,
                                  {thread.messageCount + outcome.inserted, thread.id})) {
        m_losses.add(u"The number of messages of a conversation"_s, m_database.lastErrorMessage());
    }
    // A text with an odd run of quotes makes the statement malformed: the row stays as the triggers made it.
    if (const auto snippet = DRSqlText::insideSingleQuotes(outcome.snippet)) {
        static_cast<void>(
            m_database.executeUpdate(u"UPDATE vrnm_threads SET date=?, snippet=?, snippet_type=2 WHERE _id=?"_s,
                                     {outcome.newestDate, *snippet, thread.id}));
    }
}
