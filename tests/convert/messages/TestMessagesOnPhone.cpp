#include "convert/messages/DRImportedChat.h"
#include "convert/messages/DRMessagesTemplate.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/convert/DRConverterFixture.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.android.providers.telephony"_s;

/// A data type that holds chats, as the reader leaves them.
class Chats final : public DRMigrateDataType {
public:
    Chats(const DRMigrateServices& services, const std::vector<DRImportedChat>& chats) : DRMigrateDataType(services)
    {
        setEntries(DREntryList(chats.begin(), chats.end()));
    }
};

QDateTime moment(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

/// Every row of a table, one per line, in the order of its rows; times that the triggers take from the clock left out.
QString rowsOf(DRDatabase& database, const QString& table, const QStringList& leftOut = {})
{
    QString lines;
    DRResultSet row = database.executeQuery(u"SELECT * FROM "_s + table + u" ORDER BY ROWID"_s);
    while (row.next()) {
        QStringList values;
        for (int column = 0; column < row.columnCount(); ++column) {
            if (!leftOut.contains(row.columnName(column))) {
                values << (row.isNullAt(column) ? u"-"_s : row.stringAt(column).replace(u'\n', u'⏎'));
            }
        }
        lines += values.join(u'|') + u'\n';
    }
    return row.hasFailed() ? u"cannot be read"_s : lines;
}

} // namespace

class TestMessagesOnPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRConverterFixture> m_test;

    [[nodiscard]] QString database() const { return m_test->inApp(u"db/mmssms.db"_s); }
    [[nodiscard]] auto phoneSide() const { return m_test->phoneSide<DRMigrateAndroidMessages>(); }

    DRIMessageAttachment attachment(const QString& name, const QString& mimeType, const QByteArray& bytes) const
    {
        const QString path = m_test->path(u"file "_s + name);
        if (!writeFile(path, bytes)) {
            qFatal("a file of the test cannot be written");
        }
        return {.mimeType = mimeType, .uti = {}, .filename = name, .path = path, .sizeBytes = bytes.size()};
    }

    /// Merges into the database as it stands, or an empty one.
    [[nodiscard]] DRMigrateReport merge(const std::vector<DRImportedChat>& chats) const
    {
        const auto target = phoneSide();
        return target->mergeDataFrom(Chats(m_test->test.services, chats)) ? target->report()
                                                                          : DRMigrateReport{.found = -1};
    }

    [[nodiscard]] QString rows(const QString& table, const QStringList& leftOut = {}) const
    {
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Source);
        return opened ? rowsOf(*opened, table, leftOut) : u"cannot be opened"_s;
    }

    [[nodiscard]] bool run(const QString& script) const
    {
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Phone);
        return opened && opened->executeScript(script);
    }

private Q_SLOTS:

    void init()
    {
        m_test = std::make_unique<DRConverterFixture>(kPacketID);
        QVERIFY(writeEmptyMessagesDatabase(database()));
    }

    void templateIsThatOfThePhone()
    {
        QCOMPARE(QFileInfo(database()).size(), 69632);
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Phone);
        QVERIFY(opened);
        DRResultSet version = opened->executeQuery(u"PRAGMA user_version"_s);
        QVERIFY(version.next());
        QCOMPARE(version.integerAt(0), 57);
        DRResultSet triggers = opened->executeQuery(u"SELECT COUNT(*) FROM sqlite_master WHERE type='trigger'"_s);
        QVERIFY(triggers.next());
        QCOMPARE(triggers.integerAt(0), 26);
        DRResultSet check = opened->executeQuery(u"PRAGMA integrity_check"_s);
        QVERIFY(check.next());
        QCOMPARE(check.stringAt(0), u"ok"_s);
    }

    void messagesBecomeRows()
    {
        const DRMigrateReport report = merge(
            {{.serviceName = u"SMS"_s,
              .recipients = {u"+1 555"_s, u"o'brien@x.com"_s},
              .messages =
                  {{.isFromMe = false, .address = u"+1 555"_s, .text = u"It's"_s, .date = moment(1'400'000'001'999)},
                   {.isFromMe = true, .address = u"+1 555"_s, .text = {}, .date = moment(-1)}}},
             {.serviceName = {}, .recipients = {u"o'brien@x.com"_s}, .messages = {}},
             {.serviceName = {}, .recipients = {}, .messages = {}}});
        QCOMPARE(report.found, 3);
        QCOMPARE(report.written, 2);
        QVERIFY(report.skipped.empty());
        QCOMPARE(rows(u"canonical_addresses"_s), u"1|+1 555\n2|o'brien@x.com\n3|o'brien@x.com\n"_s);
        QCOMPARE(rows(u"threads"_s, {u"date"_s}), u"1|2|1 2|-|0|1|0|0|0\n2|0|3|-|0|1|0|0|0\n"_s);
        // A text message without text leaves "(null)", the text of a missing value.
        QCOMPARE(rows(u"vrnm_threads"_s), u"1|1400000001999|1 2|(null)|0|2|0|0|0|0\n2|0|3|-|0|0|0|0|0|0\n"_s);
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Source);
        DRResultSet sms = opened->executeQuery(
            u"SELECT thread_id || '|' || address || '|' || date || '|' || read || '|' || type || '|' || "
            "ifnull(body, '-') || '|' || sequence_time AS line FROM sms ORDER BY _id"_s);
        QVERIFY(sms.next());
        QCOMPARE(sms.string("line"), u"1|+1 555|1400000001999|1|1|It's|1400000001999"_s);
        QVERIFY(sms.next());
        QCOMPARE(sms.string("line"), u"1|+1 555|-1|1|0|-|-1"_s);
    }

    void attachmentsBecomeParts()
    {
        const DRImportedMessage message{.isFromMe = true,
                                        .address = u"5"_s,
                                        .text = {},
                                        .date = moment(1'400'000'001'999),
                                        .attachments = {attachment(u"a.b.jpg"_s, u"IMAGE/jpeg"_s, "picture"),
                                                        attachment(u"s.amr"_s, u"audio/amr"_s, ""),
                                                        attachment(u"d.pdf"_s, u"application/pdf"_s, "paper"),
                                                        {.filename = u"gone.jpg"_s, .path = m_test->path(u"gone"_s)}}};
        const DRMigrateReport report = merge({{.recipients = {u"5"_s}, .messages = {message}}});
        QCOMPARE(report.counts.at(u"attachments"_s), 3);
        QCOMPARE(report.skipped.size(), 1U);
        auto opened = DRDatabase::open(database(), DRDatabase::Profile::Source);
        QString lines;
        DRResultSet part = opened->executeQuery(u"SELECT * FROM part ORDER BY _id"_s);
        while (part.next()) {
            lines += u"%1|%2|%3|%4|%5\n"_s.arg(part.string("mid"), part.string("seq"), part.string("ct"),
                                               part.string("cid"), part.string("cl"));
            if (const QString data = part.string("_data"); !data.isNull()) {
                QVERIFY2(data.startsWith(u"/data/data/%1/app_parts/PART_1400000001"_s.arg(kPacketID)),
                         qPrintable(data));
                QVERIFY(QFile::exists(m_test->inApp(u"r/app_parts/"_s + data.section(u'/', -1))));
            }
        }
        QCOMPARE(lines, u"1|0|IMAGE/jpeg|<a.b>|a.b.jpg\n1|0|audio/amr|<s>|s.amr\n1|0|application/pdf|<d>|d.pdf\n"
                        "1|0|text/plain|<text_0>|text_0.txt\n1|-1|application/smil|<smil>|smil.xml\n"_s);
        DRResultSet texts = opened->executeQuery(u"SELECT text FROM part WHERE text IS NOT NULL ORDER BY _id"_s);
        QVERIFY(texts.next());
        QCOMPARE(texts.stringAt(0), u" "_s);
        QVERIFY(texts.next());
        QVERIFY(texts.stringAt(0).endsWith(
            u"<body><par dur='5000ms'><img src='a.b.jpg' region='Image'/></par><par dur='5000ms'><audio src='s.amr'/>"
            "<text src='text_0.txt' region='Text'/></par></body></smil>"_s.replace(u'\'', u'"')));
        QVERIFY(rows(u"pdu"_s).startsWith(u"1|1|1400000001|0|2|0|"_s));
        QVERIFY(rows(u"threads"_s, {u"date"_s}).startsWith(u"1|1|1|-|-|1|0|0|1"_s)); // has an attachment
    }

    void manyAttachmentsOfOneSecondAreAllKept()
    {
        for (const qint64 milliseconds : {qint64{5000}, std::numeric_limits<qint64>::max()}) {
            DRImportedMessage message{.address = u"5"_s, .date = moment(milliseconds)};
            message.attachments.assign(1500, attachment(u"x.pdf"_s, u"application/pdf"_s, "x"));
            const DRMigrateReport report = merge({{.recipients = {u"5"_s}, .messages = {message}}});
            QCOMPARE(report.counts.at(u"attachments"_s), 1500);
        }
        QCOMPARE(QDir(m_test->inApp(u"r/app_parts"_s)).entryList(QDir::Files).size(), 3000);
        QVERIFY(!QDir(m_test->inApp(u"r/app_parts"_s)).entryList(QDir::Files).join(u' ').contains(u"PART_-"_s));
    }

    /// A missing type and an empty one are two to the triggers.
    void everyTypeOfPartIsSeenByTheTriggers()
    {
        DRImportedMessage message{.address = u"5"_s, .date = moment(5000)};
        message.attachments = {attachment(u"a"_s, {}, "x"), attachment(u"b"_s, u""_s, "x")};
        QVERIFY(merge({{.recipients = {u"5"_s}, .messages = {message}}}).skipped.empty());
        QVERIFY(rows(u"threads"_s, {u"date"_s}).startsWith(u"1|1|1|-|-|1|0|0|1"_s)); // has an attachment
    }

    /// With many conversations the writer makes indexes for a while, which must not change what the triggers see.
    void manyConversationsLeaveNoTrace()
    {
        constexpr int kChats = 1500;
        std::vector<DRImportedChat> chats;
        chats.reserve(kChats);
        for (int chat = 0; chat < kChats; ++chat) {
            chats.push_back({.recipients = {QString::number(chat)},
                             .messages = {{.address = u"a"_s, .text = u"first"_s, .date = moment(5)},
                                          {.address = u"a"_s, .text = u"second"_s, .date = moment(5)}}});
        }
        QStringList tables;
        for (const QString& further :
             {QString(), u"CREATE TABLE log (x); CREATE TRIGGER more AFTER INSERT ON pdu BEGIN "
                         "INSERT INTO log VALUES (new._id); END;"_s}) {
            QVERIFY(writeEmptyMessagesDatabase(database()));
            QVERIFY(further.isNull() || run(further));
            QVERIFY(merge(chats).skipped.empty());
            QVERIFY(!rows(u"sqlite_master"_s).contains(u"phone_migrate"_s));
            tables << rows(u"threads"_s, {u"date"_s}) + rows(u"vrnm_threads"_s) + rows(u"sms"_s);
        }
        QCOMPARE(tables.front(), tables.back());
    }

    /// The reason for leaving triggers out is speed alone: with one more trigger, which is not recognised, every one
    /// runs, and the tables are the same.
    void leavingTriggersOutChangesNothing()
    {
        std::vector<DRImportedChat> chats;
        const auto text = [](int i) {
            return i % 7 == 0 ? QString() : u"text %1 it%2s"_s.arg(i).arg(i % 5 == 0 ? u"'"_s : u""_s);
        };
        for (int chat = 0; chat < 27; ++chat) { // more than 5,000 messages
            DRImportedChat made{.recipients = {u"%1"_s.arg(chat % 9)}};
            for (int i = 0; i < 220; ++i) {
                DRImportedMessage message{
                    .isFromMe = i % 3 == 0, .address = u"a"_s, .text = text(i), .date = moment(1000LL * i)};
                if (i % (chat + 5) == 1) {
                    message.attachments = {attachment(u"p.jpg"_s, i % 2 == 0 ? u"image/jpeg"_s : u"text/plain"_s, "p")};
                }
                made.messages.push_back(message);
            }
            made.messages.resize(static_cast<std::size_t>(220 - chat));
            chats.push_back(made);
        }
        const QString before =
            u"INSERT INTO canonical_addresses VALUES (1, '3'); INSERT INTO threads (_id, message_count, recipient_ids) "
            "VALUES (1, 5, '1'); INSERT INTO vrnm_threads (_id) VALUES (1); INSERT INTO sms (thread_id, date, read, "
            "type, "
            "body) VALUES (1, 99999999, 0, 1, 'old'), (1, 5, 1, 3, 'draft'); INSERT INTO pdu (thread_id, m_type, "
            "msg_box) "
            "VALUES (1, 132, 1);"_s;
        QStringList tables;
        for (const QString& further : {u""_s, u"CREATE TABLE log (x); CREATE TRIGGER more AFTER INSERT ON sms BEGIN "
                                              "INSERT INTO log VALUES (new._id); END;"_s}) {
            QVERIFY(writeEmptyMessagesDatabase(database()));
            QVERIFY(run(before + further));
            QVERIFY(merge(chats).skipped.empty());
            tables << rows(u"canonical_addresses"_s) + rows(u"threads"_s, {u"date"_s}) +
                          rows(u"vrnm_threads"_s, {u"date"_s}) + rows(u"sms"_s) + rows(u"pdu"_s) +
                          rows(u"part"_s, {u"_data"_s}) + rows(u"pending_msgs"_s) + rows(u"words"_s);
        }
        QVERIFY(!rows(u"log"_s).isEmpty());
        QCOMPARE(tables.front(), tables.back());
    }

    void databasesOfOtherPhones_data()
    {
        const DRTestTable<QString, QString> row("change", "reason"); // reason: empty when all is written
        row("no column", u"ALTER TABLE sms DROP COLUMN sequence_time;"_s, u"sms.sequence_time"_s);
        row("no table", u"DROP TABLE pdu;"_s, u"pdu"_s);
        row("refusing", u"CREATE TRIGGER no BEFORE INSERT ON sms BEGIN SELECT RAISE(IGNORE); END;"_s, u"refused it"_s);
        row("failing", u"CREATE TRIGGER no BEFORE INSERT ON sms BEGIN SELECT RAISE(ABORT, 'never'); END;"_s,
            u"never"_s);
        row("no list of the maker's",
            u"DROP TABLE vrnm_threads; DROP TRIGGER sms_update_thread_on_insert; "
            "DROP TRIGGER pdu_update_thread_on_insert;"_s,
            u""_s);
    }

    void databasesOfOtherPhones()
    {
        QFETCH(const QString, change);
        QFETCH(const QString, reason);
        QVERIFY(run(u"DROP VIEW pdu_with_recipient_threads;"_s + change));
        const DRMigrateReport report =
            merge({{.recipients = {u"5"_s}, .messages = {{.address = u"5"_s, .text = u"x"_s, .date = moment(1)}}}});
        QCOMPARE(report.found, 1);
        QCOMPARE(report.skipped.size(), reason.isEmpty() ? 0U : 1U);
        if (!reason.isEmpty()) {
            QVERIFY2(report.skipped.front().why.contains(reason), qPrintable(report.skipped.front().why));
        }
    }

    /// Conversations that cannot be found again would be made once more.
    void unreadableConversationsAreAFailure()
    {
        constexpr qint64 kPageBytes = 1024;
        qint64 page = 0;
        {
            auto opened = DRDatabase::open(database(), DRDatabase::Profile::Source);
            DRResultSet root =
                opened->executeQuery(u"SELECT rootpage FROM sqlite_master WHERE name = 'canonical_addresses'"_s);
            QVERIFY(root.next());
            page = root.integerAt(0);
        }
        QFile file(database());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek((page - 1) * kPageBytes));
        QCOMPARE(file.write(QByteArray(kPageBytes, '\0')), kPageBytes);
        file.close();
        const auto target = phoneSide();
        QVERIFY(!target->mergeDataFrom(Chats(
            m_test->test.services, {{.recipients = {u"5"_s}, .messages = {{.address = u"5"_s, .date = moment(1)}}}})));
        QCOMPARE(target->report().skipped.back().why, u"the conversations on the phone cannot be read"_s);
    }

    void lostTransactionIsAFailure()
    {
        QVERIFY(run(
            u"CREATE TRIGGER end BEFORE INSERT ON sms WHEN new.body = 'x' BEGIN SELECT RAISE(ROLLBACK, 'end'); END;"_s));
        DRImportedChat chat{.recipients = {u"5"_s}};
        for (const QString& text : {u"a"_s, u"x"_s, u"b"_s, u"c"_s}) {
            chat.messages.push_back({.address = u"5"_s, .text = text, .date = moment(1)});
        }
        const auto target = phoneSide();
        QVERIFY(!target->mergeDataFrom(Chats(m_test->test.services, {chat})));
        QCOMPARE(rows(u"threads"_s) + rows(u"sms"_s), QString());
        QCOMPARE(target->report().skipped.back().why, u"end"_s);
    }
};

QTEST_GUILESS_MAIN(TestMessagesOnPhone)
#include "TestMessagesOnPhone.moc"
