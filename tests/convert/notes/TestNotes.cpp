#include "convert/notes/DRImportedNote.h"
#include "convert/notes/DRMigrateAndroidNotes.h"
#include "convert/notes/DRMigrateIPhoneNotes.h"
#include "convert/notes/DRNotesTemplate.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.vornmobile.notes"_s;

const QString kSchemaOfNotes =
    u"CREATE TABLE notes(_id INTEGER PRIMARY KEY, title, body, created, modified, deleted, meta_info, doodle_path, "
    "voice_path, background, sync_uid, isdirty, usn, account_id);"_s;

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool makeDatabase(const QString& path, const QString& sql)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    return database && database->executeScript(sql);
}

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
    std::unique_ptr<DRTestServices> m_test;

    [[nodiscard]] QString path(const QString& relative) const { return m_test->root.filePath(relative); }
    [[nodiscard]] QString phoneDatabase() const { return path(u"work/%1/apps/%1/db/note.db"_s.arg(kPacketID)); }
    [[nodiscard]] QString backupDatabase() const
    {
        return path(u"backup/"_s + sha1HexString(u"HomeDomain-Library/Notes/notes.sqlite"_s));
    }

    std::shared_ptr<DRMigrateIPhoneNotes> iPhoneNotes()
    {
        auto notes = std::make_shared<DRMigrateIPhoneNotes>(m_test->services);
        notes->setSourcePath(path(u"backup"_s));
        return notes;
    }

    std::shared_ptr<DRMigrateAndroidNotes> phoneNotes()
    {
        auto notes = std::make_shared<DRMigrateAndroidNotes>(m_test->services);
        notes->setSourcePath(path(u"phone"_s));
        notes->setTargetPath(path(u"work"_s));
        notes->setPacketID(kPacketID);
        return notes;
    }

private Q_SLOTS:

    void init()
    {
        m_test = std::make_unique<DRTestServices>();
        QVERIFY(QDir().mkpath(path(u"backup"_s)) && QDir().mkpath(QFileInfo(phoneDatabase()).path()));
    }

    void movesNotes_data()
    {
        QTest::addColumn<QString>("name");
        const QDir folder(QStringLiteral(MIGRATE_TEST_DATA "/notes"));
        for (const QString& file : folder.entryList({u"*.sql"_s})) {
            QTest::newRow(qPrintable(file)) << folder.filePath(file.chopped(4));
        }
    }

    void movesNotes()
    {
        QFETCH(QString, name);
        QVERIFY(makeDatabase(backupDatabase(), QString::fromUtf8(contentsOf(name + u".sql"_s))));
        const auto source = iPhoneNotes();
        const auto target = phoneNotes();
        QVERIFY(source->load());
        QVERIFY(target->mergeDataFrom(*source));
        QCOMPARE(rowsOf(phoneDatabase()), QString::fromUtf8(contentsOf(name + u".expected"_s)));
        QCOMPARE(target->report().written, source->report().found);
        QVERIFY(target->report().skipped.empty());
    }

    void noteWithoutBodyIsTold()
    {
        QVERIFY(makeDatabase(backupDatabase(),
                             u"CREATE TABLE ZNOTE(Z_PK INTEGER PRIMARY KEY); CREATE TABLE ZNOTEBODY(ZOWNER INTEGER);"
                             "INSERT INTO ZNOTE VALUES (1), (2); INSERT INTO ZNOTEBODY VALUES (2);"_s));
        const auto source = iPhoneNotes();
        QVERIFY(source->load());
        QCOMPARE(source->entries()->size(), 1U);
        QCOMPARE(source->report().warnings.size(), 1);
    }

    void newestNotesAreReadFromTheLog()
    {
        const QString live = path(u"live.sqlite"_s);
        auto database = DRDatabase::open(live, DRDatabase::Profile::Create);
        QVERIFY(database && database->executeScript(
                                u"PRAGMA journal_mode=WAL; CREATE TABLE ZNOTE(Z_PK INTEGER PRIMARY KEY, ZTITLE);"
                                "CREATE TABLE ZNOTEBODY(ZOWNER INTEGER, ZCONTENT); PRAGMA wal_checkpoint(TRUNCATE);"
                                "INSERT INTO ZNOTE VALUES (1, 'new'); INSERT INTO ZNOTEBODY VALUES (1, 'newest');"_s));
        const QString log = path(u"backup/"_s + sha1HexString(u"HomeDomain-Library/Notes/notes.sqlite-wal"_s));
        QVERIFY(QFile::copy(live, backupDatabase()));
        QVERIFY(QFile::copy(live + u"-wal"_s, log));
        const QByteArray before = contentsOf(backupDatabase()) + contentsOf(log);

        const auto source = iPhoneNotes();
        QVERIFY(source->load());
        QCOMPARE(source->entries()->size(), 1U);
        QCOMPARE(contentsOf(backupDatabase()) + contentsOf(log), before);
        QCOMPARE(QDir(path(u"backup"_s)).count(), 4U); // two files and the two dots
        QVERIFY(QDir(m_test->services.folders.temporary).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
    }

    void unreadableSources_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isNotInBackup");
        QTest::newRow("missing") << QByteArray() << true;
        QTest::newRow("no database") << QByteArray("this is not a database, but it is long enough to be read as one")
                                     << false;
        QTest::newRow("truncated") << QByteArray("SQLite format 3\0\4\0\1\1\0\100\40\40", 24) << false;
    }

    void unreadableSources()
    {
        QFETCH(QByteArray, content);
        if (!content.isEmpty()) {
            QFile file(backupDatabase());
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        }
        const auto source = iPhoneNotes();
        QVERIFY(!source->load());
        QVERIFY(source->entries()->empty());
        QTEST(source->report().isNotInBackup, "isNotInBackup");
    }

    void phoneDatabases_data()
    {
        QTest::addColumn<QString>("sql"); // empty: the file is missing
        QTest::addColumn<QString>("rows");
        QTest::addColumn<int>("warnings");
        const QString added = u"title|body|1|2\n"_s;
        QTest::newRow("missing") << QString() << added << 0;
        QTest::newRow("own notes stay") << kSchemaOfNotes + u"INSERT INTO notes(title, body) VALUES ('own', 'note')"_s
                                        << u"own|note||\n"_s + added << 0;
        QTest::newRow("without notes table") << u"CREATE TABLE other(x)"_s << added << 1;
        QTest::newRow("no database") << u"garbage"_s << added << 1;
        QTest::newRow("missing column")
            << u"CREATE TABLE notes(_id INTEGER PRIMARY KEY, title, body, created, modified)"_s << u""_s << 0;
        QTest::newRow("trigger ignores the row")
            << kSchemaOfNotes + u"CREATE TRIGGER t BEFORE INSERT ON notes BEGIN SELECT RAISE(IGNORE); END"_s << u""_s
            << 0;
    }

    void phoneDatabases()
    {
        QFETCH(QString, sql);
        QFETCH(QString, rows);
        if (sql == u"garbage") {
            QFile file(phoneDatabase());
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(4096, 'x')) == 4096);
        } else if (!sql.isEmpty()) {
            QVERIFY(makeDatabase(phoneDatabase(), sql));
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
        QVERIFY(QDir().mkpath(path(u"phone/"_s + kPacketID)));
        const QString work = path(u"work/"_s + kPacketID);
        const QString fetched = path(u"phone/%1/fullbackupdata"_s.arg(kPacketID));
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
        QVERIFY(DRImportedNote{.title = u"t"_s}.insertNoteIntoAndroidDatabase(*database, m_test->clock));
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
        QCOMPARE(row.integer("created"), m_test->clock.now().toMSecsSinceEpoch());
        QCOMPARE(row.string("account"), u"Localvnd.android.cursor.item/vnd.vornmobile.note.local"_s);
        QCOMPARE(row.integer("version"), qint64{1});
    }

    void lostTransactionIsAFailedMerge()
    {
        QVERIFY(makeDatabase(phoneDatabase(),
                             kSchemaOfNotes +
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

    void wholeRoundThroughThePacket()
    {
        QVERIFY(writeEmptyNotesDatabase(phoneDatabase()));
        const QString work = path(u"work/"_s + kPacketID);
        QFile manifest(work + u"/apps/%1/_manifest"_s.arg(kPacketID));
        QVERIFY(manifest.open(QIODevice::WriteOnly) && manifest.write("1\n") == 2);
        manifest.close();
        QVERIFY(QDir().mkpath(path(u"phone/"_s + kPacketID)));
        const QString fetched = path(u"phone/%1/fullbackupdata"_s.arg(kPacketID));
        QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(work, phoneNotes()->filesInAppsFolder().value(), fetched));
        const QByteArray before = contentsOf(fetched);

        const auto target = phoneNotes();
        QVERIFY(target->load());
        QVERIFY(!target->manifestMissing());
        const auto source = iPhoneNotes();
        source->setEntries(DREntryList{DRImportedNote{.title = u"t"_s, .content = u"b"_s}});
        QVERIFY(target->mergeDataFrom(*source));
        QVERIFY(target->save());
        QCOMPARE(contentsOf(fetched), before);

        QVERIFY(DRMigrateUtils::expandAndroidBackupPacket(work + u"/fullbackupdata"_s, path(u"again"_s)));
        const QString again = path(u"again/apps/%1/db/note.db"_s.arg(kPacketID));
        QVERIFY(rowsOf(again).startsWith(u"t|b|"_s));
    }
};

QTEST_GUILESS_MAIN(TestNotes)
#include "TestNotes.moc"
