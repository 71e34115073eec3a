#include "tests/convert/messages/DRMessagesFixture.h"
#include "tests/support/DRTestTable.h"

#include <QRegularExpression>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QDir kData(QStringLiteral(MIGRATE_TEST_DATA "/messages"));

/// The files that the script names in lines "-- file: PATH".
QStringList filesOf(const QString& sql)
{
    static const QRegularExpression line(u"^-- file: (.*)$"_s, QRegularExpression::MultilineOption);
    QStringList files;
    for (auto match = line.globalMatch(sql); match.hasNext();) {
        files << match.next().captured(1);
    }
    return files;
}

/// Everything that a program could change in a folder.
QStringList stateOf(const QString& folder)
{
    QStringList state;
    for (const QFileInfo& file :
         QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotDot)) {
        state << file.fileName() << file.lastModified().toString(Qt::ISODateWithMs)
              << QString::fromLatin1((file.isFile() ? readFile(file.filePath()) : QByteArray()).toHex());
    }
    return state;
}

QString amountIn(const DRMigrateReport& report)
{
    return u"%1/%2/%3/%4"_s.arg(report.found)
        .arg(report.counts.at(u"messages"_s))
        .arg(report.counts.at(u"attachments"_s))
        .arg(report.skipped.size());
}

} // namespace

class TestMessagesOfIPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRMessagesFixture> m_fixture;

    [[nodiscard]] QString log() const { return m_fixture->backedUp(DRMessagesFixture::kDatabase + u"-wal"_s); }

    /// Writes the database with its newest message in a log beside it, under the log's own name in a backup.
    void separateLog() const
    {
        const QString live = m_fixture->path(u"live.db"_s);
        QVERIFY(m_fixture->makeDatabase(u"PRAGMA journal_mode=WAL;"_s) && QFile::copy(m_fixture->database(), live));
        auto database = DRDatabase::open(live, DRDatabase::Profile::Create);
        QVERIFY(database &&
                database->executeScript(
                    u"INSERT INTO message (ROWID) VALUES (9); INSERT INTO chat_message_join VALUES (1, 9);"_s));
        QVERIFY(QFile::copy(live + u"-wal"_s, log()));
    }

    /// A journal of a transaction that was cut short: opening the database in the usual way would undo it, which here
    /// means to cut the database to one page, and remove the journal.
    void hotJournal() const
    {
        const QByteArray header = QByteArray::fromHex("d9d505f920a163d7 00000000 00000000 00000001 00000200 00001000");
        QVERIFY(writeFile(m_fixture->database() + u"-journal"_s, header.leftJustified(512, '\0')));
    }

    /// Makes a database of many pages, of which the last ones are no pages any more.
    void damaged() const
    {
        QVERIFY(
            m_fixture->makeDatabase(u"WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                                    "INSERT INTO message (ROWID, text) SELECT i, 'filler' FROM n;"_s));
        QFile file(m_fixture->database());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() - 8192) &&
                file.write(QByteArray(8192, 'x')) == 8192);
    }

    void cutOff() const
    {
        QVERIFY(QFile::resize(m_fixture->database(), QFileInfo(m_fixture->database()).size() - 4096));
    }

    void linked() const
    {
        const QString elsewhere = m_fixture->path(u"elsewhere.db"_s);
        QVERIFY(QFile::rename(m_fixture->database(), elsewhere) && QFile::link(elsewhere, m_fixture->database()));
    }

private Q_SLOTS:

    void initTestCase() { QVERIFY(qputenv("TZ", "Asia/Kathmandu")); }

    void init() { m_fixture = std::make_unique<DRMessagesFixture>(); }

    void databasesBecomeChats_data()
    {
        const DRTestTable<QString> row("name");
        for (const QString& file : kData.entryList({u"*.sql"_s})) {
            row(qPrintable(file), kData.filePath(file.chopped(4)));
        }
    }

    void databasesBecomeChats()
    {
        QFETCH(const QString, name);
        const QString sql = QString::fromUtf8(readFile(name + u".sql"_s));
        QVERIFY(m_fixture->makeDatabase(sql) && m_fixture->addFiles(filesOf(sql)));
        const auto messages = m_fixture->iPhoneSide();
        QVERIFY(messages->load());
        QStringList lines = linesOf(*messages);
        for (const DRMigrateSkippedItem& item : messages->report().skipped) {
            lines << u"skipped: %1: %2"_s.arg(item.what, item.why);
        }
        for (const QString& warning : messages->report().warnings) {
            lines << u"warning: "_s + warning;
        }
        QCOMPARE(lines, QString::fromUtf8(readFile(name + u".expected"_s)).trimmed().split(u'\n'));
    }

    void attachmentsAreFound_data()
    {
        // place: what lies in the backup: a path of the media domain
        // name: null when the attachment is missing
        const DRTestTable<QString, QString, QString, QString> row("storedPath", "place", "kind", "name");
        const QString path = u"Library/SMS/Attachments/aa/a.jpg"_s;
        const QString stored = u"~/"_s + path;
        row("in the home folder", stored, path, u"file"_s, u"a.jpg"_s);
        row("absolute", u"/var/mobile/"_s + path, path, u"file"_s, u"a.jpg"_s);
        row("both, repeated", u"/var/mobile/~/~/"_s + path, path, u"file"_s, u"a.jpg"_s);
        row("relative", path, path, u"file"_s, u"a.jpg"_s);
        row("of another home", u"/var/root/"_s + path, path, u"file"_s, {});
        row("no folders", u"a.jpg"_s, u"a.jpg"_s, u"file"_s, u"a.jpg"_s);
        row("zero bytes", stored, path, u"empty"_s, u"a.jpg"_s);
        row("a link", stored, path, u"link"_s, {});
        row("a folder", stored, path, u"folder"_s, {});
        row("missing", stored, path, u"nothing"_s, {});
        row("out of the backup", u"~/../../secret"_s, u"x"_s, u"nothing"_s, {});
        // Only a name by which a hash is made; no folder is left by it.
        row("dots in the path", u"~/a/../b"_s, u"a/../b"_s, u"file"_s, u"b"_s);
    }

    void attachmentsAreFound()
    {
        QFETCH(const QString, storedPath);
        QFETCH(const QString, place);
        QFETCH(const QString, kind);
        QFETCH(const QString, name);
        const QString sql = QString::fromUtf8(readFile(kData.filePath(u"both.sql"_s)));
        QVERIFY(m_fixture->makeDatabase(
            sql + u"DELETE FROM msg_group; UPDATE attachment SET filename='%1';"_s.arg(storedPath)));
        const QString file = m_fixture->backedUp(u"MediaDomain-"_s + place);
        const QByteArray bytes = kind == u"file" ? "bytes" : "";
        const QString secret = m_fixture->path(u"secret"_s);
        QVERIFY(writeFile(secret, "secret"));
        if (kind == u"file" || kind == u"empty") {
            QVERIFY(writeFile(file, bytes));
        } else if (kind == u"link") {
            QVERIFY(QFile::link(secret, file));
        } else if (kind == u"folder") {
            QVERIFY(QDir().mkpath(file));
        }
        const auto messages = m_fixture->iPhoneSide();
        QVERIFY(messages->load());
        const DREntries entries = messages->entries();
        const auto& attachments = recordsOf<DRImportedChat>(*entries).at(0)->messages.at(0).attachments;
        if (name.isNull()) {
            QVERIFY(attachments.empty());
            QCOMPARE(messages->report().skipped.at(0).what, u"The attachment "_s + storedPath);
            return;
        }
        QCOMPARE(attachments.size(), 1U);
        QVERIFY(messages->report().skipped.empty());
        QCOMPARE(attachments.at(0).filename, name);
        QCOMPARE(attachments.at(0).sizeBytes, bytes.size());
        QVERIFY(!attachments.at(0).fileData().isNull());
        QCOMPARE(attachments.at(0).fileData(), bytes);
    }

    void otherSchemasAreRead_data()
    {
        // amount: chats, messages, attachments, skipped; null when nothing is read
        const DRTestTable<QString, QString> row("change", "amount");
        row("both layouts", u""_s, u"2/2/2/0"_s);
        row("no chat", u"DROP TABLE chat;"_s, u"1/1/1/0"_s);
        row("no groups", u"DROP TABLE msg_group;"_s, u"1/1/1/0"_s);
        row("no pieces", u"DROP TABLE msg_pieces;"_s, u"2/2/1/0"_s);
        row("no attachments by name", u"DROP TABLE madrid_attachment;"_s, u"2/2/2/0"_s);
        row("no associations", u"ALTER TABLE message DROP COLUMN association_id;"_s, u"2/2/2/0"_s);
        row("no places", u"ALTER TABLE msg_pieces DROP COLUMN content_loc;"_s, u"2/2/1/0"_s);
        row("no groups of messages",
            u"ALTER TABLE message DROP COLUMN group_id; UPDATE msg_group SET ROWID=0; UPDATE group_member SET group_id=0;"_s,
            u"1/1/1/0"_s);
        row("only the columns of the order",
            u"ALTER TABLE chat DROP COLUMN service_name; ALTER TABLE message DROP COLUMN text; "
            "ALTER TABLE message DROP COLUMN is_from_me; ALTER TABLE attachment DROP COLUMN uti;"_s,
            u"2/2/2/0"_s);
        // What belongs together and lacks a table is told.
        row("no messages", u"DROP TABLE message;"_s, u"1/0/0/1"_s);
        row("no handles", u"DROP TABLE handle;"_s, u"2/2/2/1"_s);
        row("no messages of chats", u"DROP TABLE chat_message_join;"_s, u"2/1/1/1"_s);
        row("no attachments", u"DROP TABLE attachment;"_s, u"2/2/1/1"_s);
        row("no members", u"DROP TABLE group_member;"_s, u"1/1/1/2"_s);
        row("none of them", u"DROP TABLE message; DROP TABLE chat; DROP TABLE msg_group;"_s, {});
    }

    void otherSchemasAreRead()
    {
        QFETCH(const QString, change);
        QFETCH(const QString, amount);
        const QString sql = QString::fromUtf8(readFile(kData.filePath(u"both.sql"_s)));
        QVERIFY(m_fixture->makeDatabase(sql + change) && m_fixture->addFiles(filesOf(sql)));
        const auto messages = m_fixture->iPhoneSide();
        QCOMPARE(messages->load(), !amount.isNull());
        if (!amount.isNull()) {
            QCOMPARE(amountIn(messages->report()), amount);
        }
    }

    void brokenDatabases_data()
    {
        using Break = std::function<void(const TestMessagesOfIPhone&)>;
        const DRTestTable<bool, bool, QString, Break> row("isLoaded", "isNotInBackup", "amount", "breakIt");
        const auto file = [](const QByteArray& bytes) {
            return [bytes](const auto& self) { QVERIFY(writeFile(self.m_fixture->database(), bytes)); };
        };
        row("whole", true, false, u"2/2/2/2"_s, [](const auto&) {});
        row("missing", false, true, u"0/0/0/0"_s,
            [](const auto& self) { QVERIFY(QFile::remove(self.m_fixture->database())); });
        row("no database", false, false, u"0/0/0/1"_s, file(QByteArray(8192, 'x')));
        row("no bytes", false, false, u"0/0/0/1"_s, file(""));
        row("damaged", true, false, u"2/2/2/3"_s, [](const auto& self) { self.damaged(); });
        row("cut off", false, false, u"0/0/0/1"_s, [](const auto& self) { self.cutOff(); });
        row("hot journal", true, false, u"2/2/2/2"_s, [](const auto& self) { self.hotJournal(); });
        row("separate log", true, false, u"2/3/2/2"_s, [](const auto& self) { self.separateLog(); });
        row("log that is none", false, false, u"0/0/0/0"_s,
            [](const auto& self) { QVERIFY(writeFile(self.log(), QByteArray(4096, 'x'))); });
        row("a link", false, false, u"0/0/0/0"_s, [](const auto& self) { self.linked(); });
    }

    /// The backup is read-only, and what a program may do in it in spite of that must not happen either.
    void brokenDatabases()
    {
        QFETCH(const std::function<void(const TestMessagesOfIPhone&)>, breakIt);
        QVERIFY(m_fixture->makeDatabase(QString::fromUtf8(readFile(kData.filePath(u"both.sql"_s)))));
        breakIt(*this);
        const QStringList before = stateOf(m_fixture->backup());
        const auto messages = m_fixture->iPhoneSide();
        QTEST(messages->load(), "isLoaded");
        QTEST(messages->report().isNotInBackup, "isNotInBackup");
        QTEST(amountIn(messages->report()), "amount");
        QCOMPARE(stateOf(m_fixture->backup()), before);
        QVERIFY(!DRMigrateIPhoneMessages(m_fixture->test.services).load()); // without a source
    }

    void lockedDatabaseIsRead()
    {
        QVERIFY(m_fixture->makeDatabase(QString::fromUtf8(readFile(kData.filePath(u"both.sql"_s)))));
        auto owner = DRDatabase::open(m_fixture->database(), DRDatabase::Profile::Create);
        QVERIFY(owner && owner->executeScript(u"BEGIN EXCLUSIVE; DELETE FROM chat;"_s));
        QVERIFY(QFile::exists(m_fixture->database() + u"-journal"_s));
        const QStringList before = stateOf(m_fixture->backup());
        const auto messages = m_fixture->iPhoneSide();
        QVERIFY(messages->load());
        QCOMPARE(amountIn(messages->report()), u"2/2/2/2"_s);
        QCOMPARE(stateOf(m_fixture->backup()), before);
    }
};

QTEST_GUILESS_MAIN(TestMessagesOfIPhone)
#include "TestMessagesOfIPhone.moc"
