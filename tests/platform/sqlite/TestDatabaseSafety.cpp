#include "platform/core/DRFiles.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <sqlite3.h>

#include <map>
#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Profile = DRDatabase::Profile;

Q_DECLARE_METATYPE(std::optional<DRDatabase::Profile>)

namespace {

/// All that could be seen of a folder from outside: names, bytes, times of change.
using Snapshot = std::map<QString, std::pair<QByteArray, QDateTime>>;

Snapshot snapshotOf(const QString& folder)
{
    Snapshot snapshot{{u"."_s, {QByteArray(), QFileInfo(folder).lastModified()}}};
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden)) {
        snapshot[file.fileName()] = {DRFiles::readRegularFile(file.filePath(), 1 << 24).value_or("?"),
                                     file.lastModified()};
    }
    return snapshot;
}

QByteArray bigEndian(quint32 number)
{
    const quint32 swapped = qToBigEndian(number);
    return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

/// The end of a journal that belongs to a transaction over several files, with the name of the file that tells so.
QByteArray superJournalRecord(const QByteArray& name)
{
    quint32 sum = 0;
    for (const char byte : name) {
        sum += static_cast<unsigned char>(byte);
    }
    const quint32 pageOfPendingByte = 0x40000000 / 4096 + 1;
    return bigEndian(pageOfPendingByte) + name + bigEndian(static_cast<quint32>(name.size())) + bigEndian(sum) +
           QByteArray("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7");
}

int rowsReadByPlainOpen(const QString& path)
{
    sqlite3* database = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &database);
    const int result = sqlite3_exec(database, "SELECT count(*) FROM t", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    return result;
}

} // namespace

class TestDatabaseSafety : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.emplace(); }

    void sourceLeavesItsFolderAsItIs_data()
    {
        const DRTestTable<QString> row("journalMode");
        row("rollback journal", u"DELETE"_s);
        row("write-ahead log", u"WAL"_s);
    }

    void sourceLeavesItsFolderAsItIs()
    {
        QFETCH(QString, journalMode);
        const QString folder = path(u"50% of ?immutable=0#ü"_s);
        const QString file = folder + u"/sms.db"_s;
        QVERIFY(QDir().mkpath(folder));
        make(file, u"PRAGMA journal_mode=%1; CREATE TABLE t(x); INSERT INTO t VALUES (1), (2);"_s.arg(journalMode));
        ::chmod(QFile::encodeName(folder).constData(), 0555);
        const Snapshot before = snapshotOf(folder);
        {
            auto database = DRDatabase::open(file, Profile::Source);
            QVERIFY(database.has_value());
            QCOMPARE(numberFrom(*database, u"SELECT count(*) AS n FROM t"_s), 2);
            QVERIFY(!database->executeUpdate(u"INSERT INTO t VALUES (3)"_s));
            QVERIFY(!database->executeUpdate(u"CREATE TABLE u(x)"_s));
            QCOMPARE(snapshotOf(folder), before);
        }
        QCOMPARE(snapshotOf(folder), before);
        ::chmod(QFile::encodeName(folder).constData(), 0755);
    }

    void copyOfASourceShowsItsWriteAheadLogAndStaysUnwritten()
    {
        QVERIFY(QDir().mkpath(path(u"copy"_s)));
        auto writer = DRDatabase::open(path(u"a.db"_s), Profile::Create);
        QVERIFY(writer &&
                writer->executeScript(u"PRAGMA journal_mode=WAL; CREATE TABLE t(x); INSERT INTO t VALUES (1);"_s));
        for (const QString& suffix : {u""_s, u"-wal"_s}) {
            QVERIFY(DRFiles::copyToNewFile(path(u"a.db"_s) + suffix, path(u"copy/a.db"_s) + suffix));
        }
        auto database = DRDatabase::open(path(u"copy/a.db"_s), Profile::SourceCopy);
        QVERIFY(database.has_value());
        QCOMPARE(numberFrom(*database, u"SELECT count(*) AS n FROM t"_s), 1);
        QVERIFY(!database->executeUpdate(u"INSERT INTO t VALUES (3)"_s));
    }

    void onlyRegularFilesAreOpened()
    {
        make(path(u"a.db"_s), u"CREATE TABLE t(x);"_s);
        QVERIFY(QFile::link(path(u"a.db"_s), path(u"link"_s)));
        QVERIFY(QFile::link(m_folder->path(), path(u"linked"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
        for (const auto profile : {Profile::Source, Profile::SourceCopy, Profile::Phone, Profile::Create}) {
            QVERIFY(DRDatabase::open(path(u"a.db"_s), profile));
            for (const QString& name : {u"link"_s, u"linked/a.db"_s, u"pipe"_s, u"."_s}) {
                QVERIFY2(!DRDatabase::open(path(name), profile), qPrintable(name));
            }
            QVERIFY(profile == Profile::Create || !DRDatabase::open(path(u"missing"_s), profile));
        }
        QVERIFY(QFile::link(path(u"victim"_s), path(u"a.db-journal"_s)));
        QVERIFY(!DRDatabase::open(path(u"a.db"_s), Profile::Phone));
        QVERIFY(DRDatabase::open(path(u"a.db"_s), Profile::Source));
    }

    void whatIsNoDatabaseFailsWithTheFirstStatement()
    {
        QVERIFY(DRFiles::writeAtomically(path(u"text"_s), QByteArray("no database").repeated(500)));
        for (const auto profile : {Profile::Source, Profile::Phone}) {
            auto database = DRDatabase::open(path(u"text"_s), profile);
            QVERIFY(database.has_value());
            DRResultSet rows = database->executeQuery(u"SELECT * FROM sqlite_master"_s);
            QVERIFY(!rows.next() && rows.hasFailed());
            QCOMPARE(database->lastErrorMessage(), u"file is not a database"_s);
        }
    }

    void hotJournalDeletesNoOtherFile_data()
    {
        const DRTestTable<std::optional<Profile>, bool, bool, bool> row("profile", "namesVictim", "victimSurvives",
                                                                        "journalSurvives");
        row("plain open, which shows the danger", {}, true, false, false);
        row("source", std::optional(Profile::Source), true, true, true);
        row("phone", std::optional(Profile::Phone), true, true, false);
        row("copy of a source", std::optional(Profile::SourceCopy), true, true, false);
        row("honest journal", std::optional(Profile::Phone), false, true, false);
    }

    void hotJournalDeletesNoOtherFile()
    {
        QFETCH(std::optional<Profile>, profile);
        QFETCH(bool, namesVictim);
        const QString file = path(u"hot.db"_s);
        makeHotJournal(file, namesVictim ? superJournalRecord(QFile::encodeName(path(u"victim"_s))) : QByteArray());
        QVERIFY(DRFiles::writeAtomically(path(u"victim"_s), "precious"));
        if (profile) {
            auto database = DRDatabase::open(file, *profile);
            QVERIFY(database.has_value());
            const qint64 unchangedRows = numberFrom(*database, u"SELECT count(*) AS n FROM t WHERE x LIKE 'a%'"_s);
            QCOMPARE(unchangedRows == 2000, !namesVictim); // the honest journal is played back
        }
        if (!profile) {
            QCOMPARE(rowsReadByPlainOpen(file), SQLITE_OK);
        }
        QTEST(DRFiles::isRegularFile(path(u"victim"_s)), "victimSurvives");
        QTEST(DRFiles::isRegularFile(file + u"-journal"_s), "journalSurvives");
    }

    void foreignCodeRunsNowhere_data()
    {
        const DRTestTable<QString, bool> row("sql", "worksOnPhones");
        row("view", u"SELECT * FROM v"_s, true);
        row("attach", u"ATTACH 'other.db' AS other"_s, false);
        row("extension", u"SELECT load_extension('x')"_s, false);
        row("tokenizer", u"SELECT fts3_tokenizer('x', zeroblob(8))"_s, false);
        row("schema by hand", u"PRAGMA writable_schema=ON"_s, true); // accepted, and without effect
        row("schema row", u"UPDATE sqlite_master SET sql = ''"_s, false);
        row("two statements", u"SELECT 1; DELETE FROM t"_s, false);
    }

    void foreignCodeRunsNowhere()
    {
        QFETCH(QString, sql);
        make(path(u"a.db"_s), u"CREATE TABLE t(x); CREATE VIEW v AS SELECT * FROM t;"_s);
        auto source = DRDatabase::open(path(u"a.db"_s), Profile::Source);
        auto phone = DRDatabase::open(path(u"a.db"_s), Profile::Phone);
        QVERIFY(source && phone);
        QTEST(phone->executeUpdate(sql), "worksOnPhones");
        QVERIFY(sql.startsWith(u"PRAGMA") || !source->executeUpdate(sql));
    }

    void endlessQueryOnASourceEnds()
    {
        make(path(u"a.db"_s), u"CREATE TABLE t(x);"_s);
        auto database = DRDatabase::open(path(u"a.db"_s), Profile::Source);
        QVERIFY(database.has_value());
        DRResultSet rows = database->executeQuery(
            u"WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT count(*) FROM c"_s);
        QVERIFY(!rows.next() && rows.hasFailed());
        QCOMPARE(database->lastErrorMessage(), u"the database kept on working without an end"_s);
        const QString longQuery = u"WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c LIMIT 1000000) "
                                  "SELECT count(*) AS n FROM c"_s;
        QCOMPARE(numberFrom(*database, longQuery), 1'000'000);
    }

    void endlessRowsEndAlsoWithQueriesBetween()
    {
        make(path(u"a.db"_s), u"CREATE TABLE t(x);"_s);
        auto database = DRDatabase::open(path(u"a.db"_s), Profile::Source);
        QVERIFY(database.has_value());
        DRResultSet rows = database->executeQuery(
            u"WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT * FROM c WHERE x % 1000000 = 0"_s);
        while (rows.next()) {
            QVERIFY(rows.integerAt(0) < 1'000'000'000);
            QCOMPARE(numberFrom(*database, u"SELECT count(*) AS n FROM t"_s), 0);
        }
        QVERIFY(rows.hasFailed());
    }

    void endlessTriggerOfAPhoneEnds()
    {
        make(path(u"a.db"_s),
             u"CREATE TABLE t(x); CREATE TRIGGER endless AFTER INSERT ON t WHEN new.x = 2 BEGIN SELECT "
             "(WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c) SELECT count(*) FROM c);"
             "END;"_s);
        auto database = DRDatabase::open(path(u"a.db"_s), Profile::Phone);
        QVERIFY(database.has_value());
        DRStatement insert = database->prepare(u"INSERT INTO t VALUES (?)"_s);
        QVERIFY(insert.update({1}));
        QVERIFY(!insert.update({2}));
        QCOMPARE(database->lastErrorMessage(), u"the database kept on working without an end"_s);
        QVERIFY(insert.update({3}));
        QCOMPARE(numberFrom(*database, u"SELECT sum(x) AS n FROM t"_s), 4);
    }

    void triggersFireOnPhonesUnlessSwitchedOff()
    {
        make(path(u"a.db"_s), u"CREATE TABLE t(x); CREATE VIRTUAL TABLE words USING fts4(x);"
                              "CREATE TRIGGER copy AFTER INSERT ON t BEGIN INSERT INTO words VALUES (new.x); END;"_s);
        auto database = DRDatabase::open(path(u"a.db"_s), Profile::Phone);
        QVERIFY(database && database->executeUpdate(u"INSERT INTO t VALUES ('first')"_s));
        QVERIFY(database->setTriggers(DRDatabase::Triggers::Off) &&
                database->executeUpdate(u"INSERT INTO t VALUES ('second')"_s));
        QCOMPARE(numberFrom(*database, u"SELECT count(*) AS n FROM words"_s), 1);
    }

private:
    QString path(const QString& name) const { return m_folder->filePath(name); }

    static void make(const QString& file, const QString& script)
    {
        auto database = DRDatabase::open(file, Profile::Create);
        QVERIFY(database.has_value());
        QVERIFY2(database->executeScript(script), qPrintable(database->lastErrorMessage()));
    }

    /// A database whose pages are half changed, and the journal that tells how they were, which ends with `tail`.
    void makeHotJournal(const QString& file, const QByteArray& tail) const
    {
        const QString original = path(u"original.db"_s);
        make(original, u"CREATE TABLE t(x); WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c LIMIT 2000) "
                       "INSERT INTO t SELECT 'a' || hex(zeroblob(100)) FROM c;"_s);
        auto database = DRDatabase::open(original, Profile::Create);
        QVERIFY(database && database->executeScript(u"PRAGMA cache_size=5; BEGIN; UPDATE t SET x = 'b' || x;"_s));
        const auto journal = DRFiles::readRegularFile(original + u"-journal"_s, 1 << 24);
        QVERIFY(journal && !journal->isEmpty() && DRFiles::copyToNewFile(original, file));
        QVERIFY(DRFiles::writeAtomically(file + u"-journal"_s, *journal + tail));
    }

    static qint64 numberFrom(DRDatabase& database, const QString& sql)
    {
        DRResultSet rows = database.executeQuery(sql);
        return rows.next() ? rows.integer("n") : -1;
    }

    std::optional<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestDatabaseSafety)

#include "TestDatabaseSafety.moc"
