#include "platform/core/DRDates.h"
#include "tests/convert/messages/DRMessagesFixture.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kGroups = 20;
constexpr quint32 kRows = 500;

/// The files of attachments in the backup: every second photo, and the parts of every third message.
QStringList filesInBackup()
{
    QStringList files;
    for (quint32 i = 0; i < kRows; i += 2) {
        files << u"Library/SMS/Attachments/%1.jpg"_s.arg(i);
    }
    for (quint32 i = 0; i < kRows; i += 3) {
        files << u"Library/SMS/Parts/%1/00/%2-%3.bin"_s.arg(i % kGroups, 2, 16, QChar(u'0')).arg(i).arg(i % 2);
    }
    return files;
}

QStringList column(DRResultSet row, const char* name)
{
    QStringList values;
    while (row.next()) {
        values << row.string(name);
    }
    return values;
}

/// Reads a database by the statements that say what belongs together, one for each chat, message and piece: slow, but
/// plainly right.
class StatementReader {
public:
    StatementReader(const DRMessagesFixture& fixture, DRDatabase& database) : m_fixture(fixture), m_database(database)
    {
    }

    std::vector<DRImportedChat> chats()
    {
        std::vector<DRImportedChat> chats;
        for (DRResultSet row = query(u"SELECT * FROM chat"_s); row.next();) {
            chats.push_back(conversation(row));
        }
        for (const QString& id : column(query(u"SELECT * FROM msg_group"_s), "ROWID")) {
            if (DRImportedChat chat = group(id); !chat.recipients.isEmpty() && !chat.messages.empty()) {
                chats.push_back(chat);
            }
        }
        return chats;
    }

private:
    DRResultSet query(const QString& sql, const QString& id = {})
    {
        return m_database.executeQuery(id.isNull() ? sql : QString(sql).replace(u"%@"_s, id));
    }

    DRImportedChat conversation(const DRResultSet& row)
    {
        const QString id = row.string("ROWID");
        DRImportedChat chat{.serviceName = row.string("service_name")};
        chat.recipients = column(query(u"SELECT * FROM handle WHERE ROWID IN (SELECT handle_id FROM chat_handle_join "
                                       "WHERE chat_id=%@)"_s,
                                       id),
                                 "id");
        if (chat.recipients.isEmpty()) {
            chat.recipients << row.string("chat_identifier");
        }
        DRResultSet message = query(u"SELECT * FROM message WHERE ROWID IN (SELECT message_id FROM chat_message_join "
                                    "WHERE chat_id=%@) ORDER BY date"_s,
                                    id);
        while (message.next()) {
            const QStringList sender = column(
                query(u"SELECT * FROM handle WHERE ROWID=%@"_s, QString::number(message.integer("handle_id"))), "id");
            chat.messages.push_back(
                {.isFromMe = message.integer("is_from_me") != 0,
                 .address = sender.isEmpty() ? chat.recipients.front() : sender.front(),
                 .text = message.string("text").remove(QChar(0xFFFC)),
                 .date = DRDates::fromReferenceSeconds(static_cast<double>(message.integer("date"))),
                 .attachments = attachments(message.string("ROWID"))});
        }
        return chat;
    }

    std::vector<DRIMessageAttachment> attachments(const QString& messageId)
    {
        std::vector<DRIMessageAttachment> attachments;
        DRResultSet row = query(u"SELECT * FROM attachment WHERE ROWID IN (SELECT attachment_id FROM "
                                "message_attachment_join WHERE message_id=%@)"_s,
                                messageId);
        while (row.next()) {
            const QString stored = row.string("filename");
            add(attachments, file(stored.mid(2), stored.section(u'/', -1), row.string("mime_type"), row.string("uti")));
        }
        return attachments;
    }

    DRImportedChat group(const QString& id)
    {
        DRImportedChat chat{.serviceName = u"SMS"_s};
        chat.recipients = column(query(u"SELECT * FROM group_member WHERE group_id=%@"_s, id), "address");
        const QString whole = u"SELECT * FROM (SELECT * FROM message WHERE group_id=%@ AND association_id<>0 GROUP BY "
                              u"association_id UNION "
                              "SELECT * FROM message WHERE group_id=%@ AND association_id=0) ORDER BY date"_s;
        const QString all = u"SELECT * FROM message WHERE group_id=%@ ORDER BY date"_s;
        DRResultSet row = query(query(whole, id).next() ? whole : all, id);
        while (row.next()) {
            DRImportedMessage message{.isFromMe = (row.integer("flags") & 1) != 0,
                                      .address = row.string("address"),
                                      .text = row.string("text"),
                                      .date = DRDates::fromUnixSeconds(static_cast<double>(row.integer("date")))};
            addPieces(message, id, row.string("ROWID"));
            chat.messages.push_back(message);
        }
        return chat;
    }

    void addPieces(DRImportedMessage& message, const QString& groupId, const QString& messageId)
    {
        DRResultSet piece = query(u"SELECT * FROM msg_pieces WHERE message_id=%@"_s, messageId);
        while (piece.next()) {
            if (piece.string("content_type").contains(u"text/plain"_s) && message.text.isNull()) {
                message.text = piece.string("data");
                if (!message.text.isNull()) {
                    continue;
                }
            }
            if (!piece.isNull("content_loc")) {
                add(message.attachments, part(piece, groupId, messageId));
            }
        }
    }

    std::optional<DRIMessageAttachment> part(const DRResultSet& piece, const QString& groupId, const QString& messageId)
    {
        const QString location = piece.string("content_loc");
        const QString type = piece.string("content_type");
        for (const QString& path :
             column(query(u"SELECT * FROM madrid_attachment WHERE filename LIKE %@"_s, location), "filename")) {
            if (auto found = file(QString(path).remove(u"/var/mobile/"_s), path.section(u'/', -1), type, {})) {
                return found;
            }
        }
        const QString folder = u"Library/SMS/Parts/%1/00/"_s.arg(groupId.toInt(), 2, 16, QChar(u'0'));
        return file(folder + messageId + u'-' + piece.string("part_id") + u".bin"_s, location, type, {});
    }

    [[nodiscard]] std::optional<DRIMessageAttachment>
    file(const QString& path, const QString& name, const QString& type, const QString& uti) const
    {
        const QString place = m_fixture.backedUp(u"MediaDomain-"_s + path);
        return QFile::exists(place) ? std::optional(DRIMessageAttachment{.mimeType = type,
                                                                         .uti = uti,
                                                                         .filename = name,
                                                                         .path = place,
                                                                         .sizeBytes = QFileInfo(place).size()})
                                    : std::nullopt;
    }

    static void add(std::vector<DRIMessageAttachment>& list, std::optional<DRIMessageAttachment> attachment)
    {
        if (attachment) {
            list.push_back(*std::move(attachment));
        }
    }

    const DRMessagesFixture& m_fixture;
    DRDatabase& m_database;
};

/// Rows of both layouts, with gaps, repetitions, rows that belong to nothing and dates that many share.
class Rows {
public:
    explicit Rows(quint32 seed) : m_random(seed) {}

    QString script()
    {
        QString sql = u"BEGIN;"_s;
        for (quint32 i = 1; i < kGroups; ++i) {
            sql += insert(u"chat"_s, {number(i), text(i), text(i)}) + insert(u"handle"_s, {number(i * 2), text(i)}) +
                   insert(u"msg_group"_s, {number(i)}) +
                   insert(u"group_member"_s, {u"NULL"_s, number(below(kGroups)), text(i)}) +
                   insert(u"chat_handle_join"_s, {number(below(kGroups)), number(below(kGroups))});
        }
        for (quint32 i = 0; i < kRows; ++i) {
            const quint32 rowId = i * 7 % kRows; // not in order
            sql += insert(u"message"_s, {number(rowId), date(), maybe(text(rowId)), number(below(4)), address(),
                                         group(rowId), association(rowId), number(below(2)), number(below(kGroups))});
            sql += insert(u"chat_message_join"_s, {number(below(kGroups)), number(below(kRows))});
            sql += insert(u"attachment"_s, {number(rowId + 1), u"'~/Library/SMS/Attachments/%1.jpg'"_s.arg(rowId),
                                            maybe(text(i)), maybe(text(i))});
            sql += insert(u"message_attachment_join"_s, {number(below(kRows)), number(below(kRows))});
            sql += insert(u"msg_pieces"_s, {u"NULL"_s, number(below(kRows)), maybe(text(i)), number(below(2)),
                                            maybe(below(2) == 0 ? u"'text/plain'"_s : u"'image/jpeg'"_s), location()});
            sql += insert(u"madrid_attachment"_s,
                          {u"NULL"_s, u"'/var/mobile/Library/SMS/Attachments/%1.jpg'"_s.arg(below(kRows))});
        }
        return sql + u"COMMIT;"_s;
    }

private:
    quint32 below(quint32 bound) { return m_random.bounded(bound); }
    static QString number(quint32 value) { return QString::number(value); }
    static QString text(quint32 i) { return u"'%1' || char(65532)"_s.arg(i); }
    static QString insert(const QString& table, const QStringList& values)
    {
        return u"INSERT OR IGNORE INTO %1 VALUES (%2);"_s.arg(table, values.join(u','));
    }

    QString maybe(const QString& value) { return below(4) == 0 ? u"NULL"_s : value; }
    QString date() { return maybe(number(below(40))); }
    QString address() { return maybe(text(below(9))); }
    static QString group(quint32 rowId) { return rowId % kGroups == 0 ? u"NULL"_s : number(rowId % kGroups); }

    /// Every fifth group has none.
    QString association(quint32 rowId)
    {
        return rowId % kGroups % 5 == 0 ? u"NULL"_s : maybe(number(below(2) * below(9)));
    }

    QString location()
    {
        const QStringList kinds{u"NULL"_s, u"'IMG.jpg'"_s, u"'%1'"_s.arg(below(kRows)),
                                u"'''%/%1.jpg'''"_s.arg(below(kRows)), u"'''%%%1_.jpg'''"_s.arg(below(9))};
        return kinds.at(below(static_cast<quint32>(kinds.size())));
    }

    QRandomGenerator m_random;
};

const QString kSchema =
    u"CREATE TABLE msg_group (ROWID INTEGER PRIMARY KEY);"
    "CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY, group_id INTEGER, address TEXT);"
    "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, date INTEGER, text TEXT, flags INTEGER, address TEXT, "
    "group_id INTEGER, association_id INTEGER, is_from_me INTEGER, handle_id INTEGER);"
    "CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY, message_id INTEGER, data BLOB, part_id INTEGER, content_type "
    "TEXT, content_loc TEXT);"
    "CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY, filename TEXT);"
    "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, chat_identifier TEXT, service_name TEXT);"
    "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);"
    "CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER);"
    "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);"
    "CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY, filename TEXT, uti TEXT, mime_type TEXT);"
    "CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER);"_s;

/// Those of real databases and some that would let another order seem good.
const QString kIndexes =
    u"CREATE UNIQUE INDEX i1 ON chat_handle_join (chat_id, handle_id);"
    "CREATE UNIQUE INDEX i2 ON chat_message_join (chat_id, message_id);"
    "CREATE INDEX i3 ON chat_message_join (message_id, chat_id);"
    "CREATE UNIQUE INDEX i4 ON message_attachment_join (message_id, attachment_id);"
    "CREATE INDEX i5 ON message (handle_id, date); CREATE INDEX i6 ON message (group_id, ROWID);"
    "CREATE INDEX i7 ON message (flags); CREATE INDEX i8 ON message (date); CREATE UNIQUE INDEX i9 ON handle (id);"
    "CREATE INDEX i10 ON msg_pieces (message_id); CREATE INDEX i11 ON madrid_attachment (filename);"_s;

} // namespace

class TestMessageStatements : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void readerAnswersWhatTheStatementsAnswer_data()
    {
        QTest::addColumn<QString>("schema");
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 3; ++seed) {
            QTest::addRow("without indexes, %u", seed) << kSchema << seed;
            QTest::addRow("with indexes, %u", seed) << kSchema + kIndexes << seed;
        }
    }

    void readerAnswersWhatTheStatementsAnswer()
    {
        QFETCH(const QString, schema);
        QFETCH(const quint32, seed);
        const DRMessagesFixture fixture;
        QVERIFY(fixture.addFiles(filesInBackup()) && fixture.makeDatabase(schema + Rows(seed).script()));
        auto database = DRDatabase::open(fixture.database(), DRDatabase::Profile::Source);
        QVERIFY(database);
        const std::vector<DRImportedChat> expected = StatementReader(fixture, *database).chats();
        const auto messages = fixture.iPhoneSide();
        QVERIFY(messages->load());
        QCOMPARE(messages->report().found, static_cast<qint64>(expected.size()));
        QVERIFY(messages->report().counts.at(u"messages"_s) > kRows / 2);
        QVERIFY(messages->report().counts.at(u"attachments"_s) > kRows / 10);
        const DREntries entries = messages->entries();
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const DRImportedChat* chat = recordsOf<DRImportedChat>(*entries).at(i);
            QCOMPARE(linesOf(*chat), linesOf(expected.at(i)));
            QVERIFY(*chat == expected.at(i));
        }
    }
};

QTEST_GUILESS_MAIN(TestMessageStatements)
#include "TestMessageStatements.moc"
