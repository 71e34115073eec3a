#include "app/sample/DRSamplePhoneTelephony.h"

#include "app/sample/DRSampleDatabase.h"
#include "app/sample/DRSamplePhone.h"
#include "convert/messages/DRMessagesTemplate.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketId = QStringLiteral("com.android.providers.telephony");

constexpr qint64 kReceived = 1;
constexpr qint64 kSent = 2;
constexpr qint64 kReceivedMultimedia = 132; // pdu.m_type of a message that has been fetched
constexpr qint64 kMultimediaMinutesAgo = 180;

const QByteArray kAttachment =
    QByteArrayLiteral("BEGIN:VCARD\r\nVERSION:2.1\r\nN:Falk;Ada\r\nTEL;CELL:+15550100101\r\nEND:VCARD\r\n");
const QString kAttachmentName = QStringLiteral("PART_1399360089123");

struct Conversation {
    qint64 threadId; ///< also the ID of its only address
    QStringView address;
};
constexpr std::array kConversations{
    Conversation{1, u"+15550100101"},
    Conversation{2, u"+46705550102"},
};

struct Message {
    qint64 threadId;
    qint64 type;
    int minutesAgo;
    QStringView text;
};
constexpr std::array kMessages{
    Message{1, kReceived, 60 * 24 * 30, u"Hi! Is this your new number?"},
    Message{1, kSent, 60 * 24 * 30 - 4, u"It is \U0001F600 see you at Ada's"},
    Message{1, kReceived, 60 * 26, u"Don't forget the \"good\" cheese"},
    Message{2, kReceived, 60 * 24 * 8, u"Hej! Kommer du p\u00E5 l\u00F6rdag?"},
    Message{2, kSent, 60 * 24 * 8 - 30, u"Ja!"},
};

bool insertConversations(DRDatabase& database)
{
    return std::all_of(kConversations.begin(), kConversations.end(), [&database](const Conversation& conversation) {
        const QString recipients = QString::number(conversation.threadId);
        const qint64 id = conversation.threadId;
        return database.executeUpdate(u"INSERT INTO canonical_addresses (_id, address) VALUES (?, ?)"_s,
                                      {id, conversation.address.toString()}) &&
               database.executeUpdate(u"INSERT INTO threads (_id, recipient_ids) VALUES (?, ?)"_s, {id, recipients}) &&
               database.executeUpdate(u"INSERT INTO vrnm_threads (_id, recipient_ids) VALUES (?, ?)"_s,
                                      {id, recipients});
    });
}

bool insertMessage(DRDatabase& database, const Message& message, const QDateTime& moment)
{
    const qint64 milliseconds = moment.addSecs(-60LL * message.minutesAgo).toMSecsSinceEpoch();
    const QString text = message.text.toString();
    // The app itself enters a message into the search index, as table 1; only changes are left to triggers.
    return database.executeUpdate(
               u"INSERT INTO sms (thread_id, address, date, date_sent, protocol, read, type, reply_path_present, body, "
               u"seen, "
               "sequence_time) VALUES (?1, (SELECT address FROM canonical_addresses WHERE _id = ?1), ?2, ?2, 0, 1, ?3, 0, ?4, 1, ?2)"_s,
               {message.threadId, milliseconds, message.type, text}) &&
           database.executeUpdate(
               u"INSERT INTO words (_id, index_text, source_id, table_to_use) VALUES (?1, ?2, ?1, 1)"_s,
               {database.lastInsertRowId(), text});
}

bool insertMultimediaMessage(DRDatabase& database, const QDateTime& moment)
{
    const qint64 seconds = moment.addSecs(-60 * kMultimediaMinutesAgo).toSecsSinceEpoch();
    if (!database.executeUpdate(
            u"INSERT INTO pdu (thread_id, date, msg_box, read, sub, sub_cs, ct_t, m_type, v, seen, sequence_time) "
            u"VALUES "
            "(1, ?1, 1, 1, 'Ada', 106, 'application/vnd.wap.multipart.related', ?2, 18, 1, ?1 * 1000)"_s,
            {seconds, kReceivedMultimedia})) {
        return false;
    }
    const qint64 pduId = database.lastInsertRowId();
    const QString data = u"/data/data/%1/app_parts/%2"_s.arg(kPacketId, kAttachmentName);
    return database.executeUpdate(
               u"INSERT INTO addr (msg_id, address, type, charset) VALUES (?, '+15550100101', 137, 106)"_s, {pduId}) &&
           database.executeUpdate(u"INSERT INTO part (mid, seq, ct, chset, cid, cl, text) VALUES "
                                  "(?, 0, 'text/plain', 106, '<text_0>', 'text_0.txt', 'Here is my card')"_s,
                                  {pduId}) &&
           database.executeUpdate(
               u"INSERT INTO part (mid, seq, ct, cid, cl, _data) VALUES (?, 0, 'text/x-vcard', '<ada>', 'ada.vcf', ?)"_s,
               {pduId, data});
}

/// The triggers date every conversation by the clock, the app then by its newest message.
bool dateConversations(DRDatabase& database)
{
    const QString newest = u"(SELECT MAX(moment) FROM (SELECT date AS moment, thread_id FROM sms UNION ALL "
                           "SELECT date * 1000, thread_id FROM pdu) WHERE thread_id = %1._id)"_s;
    const auto update = [&database, &newest](const QString& table) {
        return database.executeUpdate(u"UPDATE %1 SET date = %2"_s.arg(table, newest.arg(table)));
    };
    return update(u"threads"_s) && update(u"vrnm_threads"_s);
}

bool insertRows(DRDatabase& database, const QDateTime& moment)
{
    return insertConversations(database) &&
           std::all_of(
               kMessages.begin(), kMessages.end(),
               [&database, &moment](const Message& message) { return insertMessage(database, message, moment); }) &&
           insertMultimediaMessage(database, moment) && dateConversations(database);
}

} // namespace

bool addPhoneTelephony(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    return phone.addPacket({.packetId = kPacketId, .versionCode = 19}, [&settings](const QString& appFolder) {
        const QString path = appFolder + u"/db/mmssms.db"_s;
        if (!writeEmptyMessagesDatabase(path)) {
            return false;
        }
        auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
        return database && insertRows(*database, settings.moment) &&
               writeSampleFile(appFolder + u"/r/app_parts/"_s + kAttachmentName, kAttachment);
    });
}
