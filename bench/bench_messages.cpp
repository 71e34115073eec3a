// The cost of a message must not depend on how many there are, nor on the length of its conversation. Writing: the whole merge into
// the database of an empty phone, beside plain inserts into the same table without triggers and inserts with the phone's triggers on.
// Reading: 200,000 messages with 20,000 attachments in 300 chats, with the iPhone's indexes and without any, beside a plain scan of
// five columns. The peak of memory is that of the whole process, so run the million alone.

#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMessagesTemplate.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "convert/messages/DRMigrateIPhoneMessages.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.android.providers.telephony"_s;

constexpr qint64 kFirstDate = 1'300'000'000'000; ///< milliseconds since 1970
constexpr qint64 kMessageApart = 60'000;

/// A data type that holds chats, as the reader leaves them.
class Chats final : public DRMigrateDataType {
public:
    Chats(const DRMigrateServices& services, DREntryList chats) : DRMigrateDataType(services)
    {
        setEntries(std::move(chats));
    }
};

QString textOf(qint64 message)
{
    return u"See you at the station at ten, or else at the old mill (%1)"_s.arg(message);
}

QString addressOf(qint64 chat)
{
    return u"+1555%1"_s.arg(chat, 7, 10, QChar(u'0'));
}

DREntryList makeChats(qint64 messages, qint64 chats)
{
    DREntryList made;
    for (qint64 chat = 0; chat < chats; ++chat) {
        const QString address = addressOf(chat);
        DRImportedChat next{.serviceName = u"SMS"_s, .recipients = {address}, .messages = {}};
        for (qint64 i = chat; i < messages; i += chats) {
            next.messages.push_back({.isFromMe = i % 2 == 0,
                                     .address = address,
                                     .text = textOf(i),
                                     .date = QDateTime::fromMSecsSinceEpoch(kFirstDate + i * kMessageApart, Qt::UTC),
                                     .attachments = {}});
        }
        made.emplace_back(std::move(next));
    }
    return made;
}

double peakMebibytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void countPerMessage(benchmark::State& state, qint64 messages)
{
    state.counters["per message"] = benchmark::Counter(
        static_cast<double>(messages), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["peak MiB"] = peakMebibytes();
}

qint64 number(DRDatabase& database, const QString& sql)
{
    DRResultSet row = database.executeQuery(sql);
    return row.next() ? row.integerAt(0) : -1;
}

/// The size that the database ended with and what of it is unused, in KiB.
void countPages(benchmark::State& state, const QString& path)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
    if (database) {
        state.counters["KiB"] = static_cast<double>(number(*database, u"PRAGMA page_count"_s));
        state.counters["free KiB"] = static_cast<double>(number(*database, u"PRAGMA freelist_count"_s));
    }
}

QString databaseIn(const DRTestServices& test)
{
    return test.root.filePath(u"work/%1/apps/%1/db/mmssms.db"_s.arg(kPacketID));
}

void writeMessages(benchmark::State& state)
{
    DRTestServices test;
    const Chats source(test.services, makeChats(state.range(0), state.range(1)));
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        const bool isMade = writeEmptyMessagesDatabase(databaseIn(test));
        DRMigrateAndroidMessages target(test.services);
        target.setTargetPath(test.root.filePath(u"work"_s));
        target.setPacketID(kPacketID);
        state.ResumeTiming();
        if (!isMade || !target.mergeDataFrom(source) || target.report().counts.at(u"messages"_s) != state.range(0)) {
            state.SkipWithError("the messages were not written");
            return;
        }
    }
    countPerMessage(state, state.range(0));
    countPages(state, databaseIn(test));
}

/// Without triggers, or with the rows of conversations that the triggers count for.
bool prepareForInserts(DRDatabase& database, qint64 chats, bool hasTriggers)
{
    QString script;
    DRResultSet trigger = database.executeQuery(u"SELECT name FROM sqlite_master WHERE type = 'trigger'"_s);
    while (!hasTriggers && trigger.next()) {
        script += u"DROP TRIGGER %1;"_s.arg(trigger.string("name"));
    }
    for (qint64 chat = 1; chat <= chats; ++chat) {
        script += u"INSERT INTO threads (_id) VALUES (%1); INSERT INTO vrnm_threads (_id) VALUES (%1);"_s.arg(chat);
    }
    return database.executeScript(script);
}

bool insertPlainly(DRDatabase& database, const DREntryList& chats)
{
    DRTransaction transaction(database);
    DRStatement insert = database.prepare(u"INSERT INTO sms (thread_id, address, date, read, type, body, "
                                          "sequence_time) VALUES (?, ?, ?, ?, ?, ?, ?)"_s);
    qint64 thread = 0;
    for (const DRImportedChat* chat : recordsOf<DRImportedChat>(chats)) {
        ++thread;
        for (const DRImportedMessage& message : chat->messages) {
            const qint64 moment = message.date.toMSecsSinceEpoch();
            const qint64 type = message.isFromMe ? 0 : 1;
            if (!insert.update({thread, message.address, moment, qint64{1}, type, message.text, moment})) {
                return false;
            }
        }
    }
    return transaction.commit();
}

void insertRows(benchmark::State& state, bool hasTriggers)
{
    DRTestServices test;
    const DREntryList chats = makeChats(state.range(0), state.range(1));
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        const bool isMade = writeEmptyMessagesDatabase(databaseIn(test));
        auto database = DRDatabase::open(databaseIn(test), DRDatabase::Profile::Phone);
        const bool isPrepared = isMade && database && prepareForInserts(*database, state.range(1), hasTriggers);
        state.ResumeTiming();
        if (!isPrepared || !insertPlainly(*database, chats)) {
            state.SkipWithError("the rows were not inserted");
            return;
        }
    }
    countPerMessage(state, state.range(0));
    countPages(state, databaseIn(test));
}

void insertWithoutTriggers(benchmark::State& state)
{
    insertRows(state, false);
}

void insertWithTriggers(benchmark::State& state)
{
    insertRows(state, true);
}

constexpr qint64 kReadMessages = 200'000;
constexpr qint64 kReadAttachments = 20'000;
constexpr qint64 kReadChats = 300;

const QString kTables =
    u"CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, text TEXT, replace INTEGER DEFAULT 0, "
    "service_center TEXT, handle_id INTEGER DEFAULT 0, subject TEXT, country TEXT, version INTEGER DEFAULT 0, "
    "type INTEGER DEFAULT 0, service TEXT, account TEXT, error INTEGER DEFAULT 0, date INTEGER, date_read INTEGER, "
    "date_delivered INTEGER, is_delivered INTEGER DEFAULT 0, is_finished INTEGER DEFAULT 0, "
    "is_from_me INTEGER DEFAULT 0, is_read INTEGER DEFAULT 0);"
    "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT, country TEXT, service TEXT);"
    "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, chat_identifier TEXT, service_name TEXT);"
    "CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT, filename TEXT, uti TEXT, "
    "mime_type TEXT);"
    "CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER);"
    "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);"
    "CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER);"_s;
const QString kIndexes = u"CREATE UNIQUE INDEX message_guid ON message (guid);"
                         "CREATE INDEX message_handle ON message (handle_id, date);"
                         "CREATE UNIQUE INDEX chat_handle ON chat_handle_join (chat_id, handle_id);"
                         "CREATE UNIQUE INDEX chat_message ON chat_message_join (chat_id, message_id);"
                         "CREATE INDEX message_chat ON chat_message_join (message_id);"
                         "CREATE UNIQUE INDEX message_attachment ON message_attachment_join (message_id, "
                         "attachment_id);"_s;

/// Many attachments share a file, which spares the making of 20,000; finding one costs the same.
QString attachmentPath(qint64 attachment)
{
    constexpr qint64 kFiles = 256;
    return u"Library/SMS/Attachments/%1/10/IMG_0001.jpg"_s.arg(attachment % kFiles, 2, 16, QChar(u'0'));
}

bool writeChats(DRDatabase& database)
{
    DRStatement handle = database.prepare(u"INSERT INTO handle (ROWID, id, service) VALUES (?, ?, 'iMessage')"_s);
    DRStatement chat =
        database.prepare(u"INSERT INTO chat (ROWID, chat_identifier, service_name) VALUES (?, ?, 'iMessage')"_s);
    DRStatement join = database.prepare(u"INSERT INTO chat_handle_join VALUES (?, ?)"_s);
    bool isDone = true;
    for (qint64 id = 1; id <= kReadChats; ++id) {
        isDone =
            isDone && handle.update({id, addressOf(id)}) && chat.update({id, addressOf(id)}) && join.update({id, id});
    }
    return isDone;
}

bool writeMessageRows(DRDatabase& database)
{
    DRStatement message = database.prepare(
        u"INSERT INTO message (ROWID, guid, text, handle_id, service, account, date, is_from_me, is_read) "
        "VALUES (?, ?, ?, ?, 'iMessage', 'p:+15550000000', ?, ?, 1)"_s);
    DRStatement join = database.prepare(u"INSERT INTO chat_message_join VALUES (?, ?)"_s);
    bool isDone = true;
    for (qint64 id = 1; id <= kReadMessages; ++id) {
        const qint64 chat = id % kReadChats + 1;
        const QString guid = u"5E1B7A60-0000-4000-8000-%1"_s.arg(id, 12, 16, QChar(u'0'));
        isDone = isDone && message.update({id, guid, textOf(id), chat, 300'000'000 + id * 60, id % 2}) &&
                 join.update({chat, id});
    }
    return isDone;
}

bool writeAttachments(DRDatabase& database, const QString& folder)
{
    DRStatement attachment = database.prepare(
        u"INSERT INTO attachment (ROWID, filename, uti, mime_type) VALUES (?, ?, 'public.jpeg', 'image/jpeg')"_s);
    DRStatement join = database.prepare(u"INSERT INTO message_attachment_join VALUES (?, ?)"_s);
    bool isDone = true;
    for (qint64 id = 1; id <= kReadAttachments; ++id) {
        QFile file(folder + u'/' + sha1HexString(u"MediaDomain-"_s + attachmentPath(id)));
        isDone = isDone && attachment.update({id, u"~/"_s + attachmentPath(id)}) &&
                 join.update({id * (kReadMessages / kReadAttachments), id}) && file.open(QIODevice::WriteOnly) &&
                 file.write("picture") > 0;
    }
    return isDone;
}

bool writeBackup(const QString& folder, bool isIndexed)
{
    QDir().mkpath(folder);
    const QString path = folder + u'/' + sha1HexString(u"HomeDomain-Library/SMS/sms.db"_s);
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    if (!database || !database->executeScript(kTables + (isIndexed ? kIndexes : QString()))) {
        return false;
    }
    DRTransaction transaction(*database);
    return writeChats(*database) && writeMessageRows(*database) && writeAttachments(*database, folder) &&
           transaction.commit();
}

void readMessages(benchmark::State& state)
{
    DRTestServices test;
    const QString folder = test.root.filePath(u"backup"_s);
    if (!writeBackup(folder, state.range(0) != 0)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhoneMessages source(test.services);
        source.setSourcePath(folder);
        const bool isRead = source.load() && source.report().found == kReadChats &&
                            source.report().counts.at(u"messages"_s) == kReadMessages &&
                            source.report().counts.at(u"attachments"_s) == kReadAttachments;
        if (!isRead) {
            state.SkipWithError("the messages were not read");
            return;
        }
    }
    countPerMessage(state, kReadMessages);
}

void scanMessages(benchmark::State& state)
{
    DRTestServices test;
    const QString folder = test.root.filePath(u"backup"_s);
    if (!writeBackup(folder, true)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    const QString path = folder + u'/' + sha1HexString(u"HomeDomain-Library/SMS/sms.db"_s);
    for ([[maybe_unused]] auto iteration : state) {
        auto database = DRDatabase::open(path, DRDatabase::Profile::Source);
        DRResultSet row = database->executeQuery(u"SELECT ROWID, text, date, is_from_me, handle_id FROM message"_s);
        while (row.next()) {
            benchmark::DoNotOptimize(row.integerAt(0) + row.integerAt(2) + row.integerAt(3) + row.integerAt(4));
            benchmark::DoNotOptimize(row.stringAt(1));
        }
        if (row.hasFailed()) {
            state.SkipWithError("the messages were not scanned");
            return;
        }
    }
    countPerMessage(state, kReadMessages);
}

} // namespace

BENCHMARK(writeMessages)
    ->ArgNames({"messages", "chats"})
    ->ArgsProduct({{10'000, 200'000}, {1, 20}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(insertWithoutTriggers)
    ->ArgNames({"messages", "chats"})
    ->ArgsProduct({{10'000, 200'000}, {1, 20}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(insertWithTriggers)->ArgNames({"messages", "chats"})->Args({10'000, 20})->Unit(benchmark::kMillisecond);
BENCHMARK(writeMessages)
    ->Name("writeMillion")
    ->ArgNames({"messages", "chats"})
    ->Args({1'000'000, 300})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(scanMessages)->Unit(benchmark::kMillisecond);
BENCHMARK(readMessages)->ArgName("indexed")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
