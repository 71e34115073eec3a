#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRMigrateAndroidNotes.h"
#include "convert/notes/DRMigrateIPhoneNotes.h"
#include "convert/notes/DRNotesTemplate.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "tests/convert/DRConverterFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QString kSchemaOfNotes =
    u"CREATE TABLE notes(_id INTEGER PRIMARY KEY, title, body, created, modified, deleted, meta_info, doodle_path, "
    "voice_path, background, sync_uid, isdirty, usn, account_id);"_s;

/// The notes of the phone's database, one per line.
QString rowsOf(const QString& path)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Source);
    if (!database) {
        return u"cannot be opened"_s;
    }
    QString lines;
    DRResultSet rows = database->executeQuery(u"SELECT * FROM notes ORDER BY _id"_s);
    while (rows.next()) {
        const QString body = rows.string("body").replace(u'\n', u'⏎');
        lines += u"%1|%2|%3|%4\n"_s.arg(rows.string("title"), body, rows.string("created"), rows.string("modified"));
    }
    return rows.hasFailed() ? u"cannot be read"_s : lines;
}

} // namespace

class TestNotes : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRConverterFixture> m_test;

    [[nodiscard]] QString phoneDatabase() const { return m_test->inApp(u"db/note.db"_s); }
    [[nodiscard]] QString backupDatabase() const
    {
        return m_test->backedUp(u"HomeDomain-Library/Notes/notes.sqlite"_s);
    }
    [[nodiscard]] auto iPhoneNotes() const { return m_test->iPhoneSide<DRMigrateIPhoneNotes>(); }
    [[nodiscard]] auto phoneNotes() const { return m_test->phoneSide<DRMigrateAndroidNotes>(); }

private Q_SLOTS:
    void init()
    {
        m_test = std::make_unique<DRConverterFixture>(u"com.vornmobile.notes"_s);
        QVERIFY(QDir().mkpath(QFileInfo(phoneDatabase()).path()));
    }

    void movesNotes_data()
    {
        const DRTestTable<QString> row("name");
        const QDir folder(QStringLiteral(MIGRATE_TEST_DATA "/notes"));
        for (const QString& file : folder.entryList({u"*.sql"_s})) {
            row(qPrintable(file), folder.filePath(file.chopped(4)));
        }
    }

    void movesNotes()
    {
        QFETCH(QString, name);
        QVERIFY(DRConverterFixture::run(backupDatabase(), QString::fromUtf8(readFile(name + u".sql"_s))));
        const auto source = iPhoneNotes();
        const auto target = phoneNotes();
        QVERIFY(source->load());
        QVERIFY(target->mergeDataFrom(*source));
        QCOMPARE(rowsOf(phoneDatabase()), QString::fromUtf8(readFile(name + u".expected"_s)));
        QCOMPARE(target->report().written, source->report().found);
        QVERIFY(target->report().skipped.empty());
    }

    void noteWithoutBodyIsTold()
    {
        QVERIFY(DRConverterFixture::run(
            backupDatabase(), u"CREATE TABLE ZNOTE(Z_PK INTEGER PRIMARY KEY); CREATE TABLE ZNOTEBODY(ZOWNER INTEGER);"
                              "INSERT INTO ZNOTE VALUES (1), (2); INSERT INTO ZNOTEBODY VALUES (2);"_s));
        const auto source = iPhoneNotes();
        QVERIFY(source->load());
        QCOMPARE(source->entries()->size(), 1U);
        QCOMPARE(source->report().warnings.size(), 1);
    }

    void newestNotesAreReadFromTheLog()
    {
        const QString live = m_test->path(u"live.sqlite"_s);
        auto database = DRDatabase::open(live, DRDatabase::Profile::Create);
        QVERIFY(database && database->executeScript(
                                u"PRAGMA journal_mode=WAL; CREATE TABLE ZNOTE(Z_PK INTEGER PRIMARY KEY, ZTITLE);"
                                "CREATE TABLE ZNOTEBODY(ZOWNER INTEGER, ZCONTENT); PRAGMA wal_checkpoint(TRUNCATE);"
                                "INSERT INTO ZNOTE VALUES (1, 'new'); INSERT INTO ZNOTEBODY VALUES (1, 'newest');"_s));
        const QString log = m_test->backedUp(u"HomeDomain-Library/Notes/notes.sqlite-wal"_s);
        QVERIFY(QFile::copy(live, backupDatabase()));
        QVERIFY(QFile::copy(live + u"-wal"_s, log));
        const QByteArray before = readFile(backupDatabase()) + readFile(log);

        const auto source = iPhoneNotes();
        QVERIFY(source->load());
        QCOMPARE(source->entries()->size(), 1U);
        QCOMPARE(readFile(backupDatabase()) + readFile(log), before);
        QCOMPARE(QDir(m_test->path(u"backup"_s)).count(), 4U); // two files and the two dots
        QVERIFY(QDir(m_test->test.services.folders.temporary).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
    }

    void unreadableSources_data()
    {
        const DRTestTable<QByteArray, bool> row("content", "isNotInBackup");
        row("missing", {}, true);
        row("no database", "this is not a database, but it is long enough to be read as one", false);
        row("truncated", QByteArray("SQLite format 3\0\4\0\1\1\0\100\40\40", 24), false);
    }

    void unreadableSources()
    {
        QFETCH(QByteArray, content);
        QVERIFY(content.isEmpty() || writeFile(backupDatabase(), content));
        const auto source = iPhoneNotes();
        QVERIFY(!source->load());
        QVERIFY(source->entries()->empty());
        QTEST(source->report().isNotInBackup, "isNotInBackup");
    }

    void phoneDatabases_data()
    {
        const DRTestTable<QString, QString, int> row("sql", "rows", "warnings"); // sql: empty: the file is missing
        const QString added = u"title|body|1|2\n"_s;
        row("missing", {}, added, 0);
        row("own notes stay", kSchemaOfNotes + u"INSERT INTO notes(title, body) VALUES ('own', 'note')"_s,
            u"own|note||\n"_s + added, 0);
        row("without notes table", u"CREATE TABLE other(x)"_s, added, 1);
        row("no database", u"garbage"_s, added, 1);
        row("missing column", u"CREATE TABLE notes(_id INTEGER PRIMARY KEY, title, body, created, modified)"_s, u""_s,
            0);
        row("trigger ignores the row",
            kSchemaOfNotes + u"CREATE TRIGGER t BEFORE INSERT ON notes BEGIN SELECT RAISE(IGNORE); END"_s, u""_s, 0);
    }

    void phoneDatabases()
    {
        QFETCH(QString, sql);
        QFETCH(QString, rows);
        if (sql == u"garbage") {
            QVERIFY(writeFile(phoneDatabase(), QByteArray(4096, 'x')));
        } else if (!sql.isEmpty()) {
            QVERIFY(DRConverterFixture::run(phoneDatabase(), sql));
        }
        const auto source = iPhoneNotes();
        source->setEntries(DREntryList{DRImportedNote{.title = u"title"_s,
                                                      .content = u"body"_s,
                                                      .creationDate = QDateTime::fromMSecsSinceEpoch(1, Qt::UTC),
                                                      .modificationDate = QDateTime::fromMSecsSinceEpoch(2, Qt::UTC)}});
        const auto target = phoneNotes();
        QVERIFY(target->mergeDataFrom(*source));
        QCOMPARE(rowsOf(phoneDatabase()), rows);
        QTEST(int(target->report().warnings.size()), "warnings");
        QCOMPARE(target->report().written + static_cast<qint64>(target->report().skipped.size()), qint64{1});
        QCOMPARE(target->report().written == 1, rows.contains(u"title|body"));
    }

    void packetWithoutManifestIsLeftAlone()
    {
        QVERIFY(writeEmptyNotesDatabase(phoneDatabase()));
        QVERIFY(QDir().mkpath(m_test->path(u"phone/"_s + m_test->packetID)));
        const QString work = m_test->path(u"work/"_s + m_test->packetID);
        const QString fetched = m_test->path(u"phone/%1/fullbackupdata"_s.arg(m_test->packetID));
        QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(work, phoneNotes()->filesInAppsFolder().value(), fetched));

        const auto target = phoneNotes();
        QVERIFY(target->load());
        QVERIFY(target->ignoreDataType());
        const auto source = iPhoneNotes();
        source->setEntries(DREntryList{DRImportedNote{.title = u"t"_s, .content = u"b"_s}});
        QVERIFY(target->mergeDataFrom(*source) && target->save());
        QCOMPARE(target->report().written, qint64{0});
        QCOMPARE(target->report().skipped.size(), 1U);
        QVERIFY(!QFile::exists(work + u"/fullbackupdata"_s));
    }

    void writtenRowIsALocalUnsynchronisedNote()
    {
        QVERIFY(writeEmptyNotesDatabase(phoneDatabase()));
        QCOMPARE(QFileInfo(phoneDatabase()).size(), 5120);
        auto database = DRDatabase::open(phoneDatabase(), DRDatabase::Profile::Phone);
        QVERIFY(database);
        QVERIFY(DRImportedNote{.title = u"t"_s}.insertNoteIntoAndroidDatabase(*database, m_test->test.clock));
        DRResultSet row = database->executeQuery(
            u"SELECT quote(body) || '|' || deleted || '|' || quote(meta_info) || quote(doodle_path) || "
            u"quote(voice_path) || "
            "'|' || background || '|' || quote(sync_uid) || '|' || isdirty || usn || account_id || '|' || "
            "(created = modified) AS text, created, (SELECT display_name || account_type FROM accounts WHERE _id = 1) "
            "AS "
            "account, (SELECT user_version FROM pragma_user_version) AS version FROM notes"_s);
        QVERIFY(row.next());
        QCOMPARE(row.string("text"),
                 u"NULL|0|''''''|com.vornmobile.notes:drawable/notes_background_grid_view_1|NULL|101|1"_s);
        QCOMPARE(row.integer("created"), m_test->test.clock.now().toMSecsSinceEpoch());
        QCOMPARE(row.string("account"), u"Localvnd.android.cursor.item/vnd.vornmobile.note.local"_s);
        QCOMPARE(row.integer("version"), qint64{1});
    }

    void lostTransactionIsAFailedMerge()
    {
        QVERIFY(DRConverterFixture::run(
            phoneDatabase(), kSchemaOfNotes +
                                 u"CREATE TRIGGER t AFTER INSERT ON notes WHEN new.title = 'two' BEGIN SELECT "
                                 "RAISE(ROLLBACK, 'full'); END;"_s));
        const auto source = iPhoneNotes();
        source->setEntries(DREntryList{DRImportedNote{.title = u"one"_s}, DRImportedNote{.title = u"two"_s},
                                       DRImportedNote{.title = u"three"_s}});
        const auto target = phoneNotes();
        QVERIFY(!target->mergeDataFrom(*source));
        QCOMPARE(target->report().written, qint64{0});
        QCOMPARE(rowsOf(phoneDatabase()), u""_s);
    }
};

QTEST_GUILESS_MAIN(TestNotes)
#include "TestNotes.moc"
