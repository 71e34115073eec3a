#include "convert/bookmarks/DRMigrateAndroidBookmarks.h"
#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/convert/bookmarks/DRBookmarksFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QString kColumns =
    u"_id INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT, url TEXT, folder INTEGER NOT NULL DEFAULT 0, parent INTEGER, "
    "position INTEGER NOT NULL, version INTEGER NOT NULL DEFAULT 1, created INTEGER, modified INTEGER"_s;
const QString kSchema = u"CREATE TABLE bookmarks(%1, dirty INTEGER NOT NULL DEFAULT 0);"
                        "INSERT INTO bookmarks(title, folder, position) VALUES ('Bookmarks', 1, 0);"_s.arg(kColumns);

QString triggerBefore(const QString& when, const QString& action)
{
    return u"CREATE TRIGGER t BEFORE INSERT ON bookmarks WHEN %1 BEGIN SELECT RAISE(%2); END;"_s.arg(when, action);
}

} // namespace

class TestBookmarksOnPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRBookmarksFixture> m_phone;

    [[nodiscard]] QString database() const { return m_phone->inApp(u"db/browser2.db"_s); }

    [[nodiscard]] bool makeDatabase(const QString& sql) const { return DRBookmarksFixture::run(database(), sql); }

    /// Titles with the numbers of their rows and of the folders around them, without the browser's own root.
    [[nodiscard]] QString rows() const
    {
        auto phone = DRDatabase::open(database(), DRDatabase::Profile::Phone);
        QStringList lines;
        DRResultSet row = phone->executeQuery(u"SELECT * FROM bookmarks WHERE _id > 1 ORDER BY _id"_s);
        while (row.next()) {
            lines << u"%1=%2<%3"_s.arg(row.string("_id"), row.string("title"), row.string("parent"));
        }
        return lines.join(u' ');
    }

private Q_SLOTS:

    void init() { m_phone = std::make_unique<DRBookmarksFixture>(u"com.android.browser"_s); }

    void writtenValues()
    {
        QVERIFY(makeDatabase(u"PRAGMA journal_mode=WAL;"_s + kSchema));
        const auto target = m_phone->phoneSide<DRMigrateAndroidBookmarks>();
        QVERIFY(target->mergeDataFrom(*m_phone->source(m_phone->bookmarks(2), m_phone->folders(u"0: 1; 5<0: 2"_s))));
        QVERIFY(QFile::exists(database() + u"-wal"_s));
        auto phone = DRDatabase::open(database(), DRDatabase::Profile::Phone);
        QString lines;
        DRResultSet row = phone->executeQuery(u"SELECT * FROM bookmarks WHERE _id > 1"_s);
        while (row.next()) {
            for (int column = 0; column < row.columnCount(); ++column) {
                lines += (row.isNullAt(column) ? u"-"_s : row.stringAt(column)) + u' ';
            }
            lines += u'\n';
        }
        QCOMPARE(lines, u"2 B1 http://1/ 0 1 0 1 1399360089000 1399360089000 1 \n"
                        "3 F5 - 1 1 0 1 - - 1 \n"
                        "4 B2 http://2/ 0 3 0 1 1399360089000 1399360089000 1 \n"_s);
        QCOMPARE(target->report().written, qint64{2});
        QCOMPARE(target->report().counts.at(u"folders"_s), qint64{1});
        QVERIFY(target->report().skipped.empty());
    }

    void phoneDatabases_data()
    {
        // rows: after bookmark 1 in the root, 2 in folder 5, 3 in folder 6 in 5
        const DRTestTable<QString, QString, int, int, bool> row("sql", "rows", "written", "skipped", "ignored");
        const QString all = u"2=B1<1 3=F5<1 4=B2<3 5=F6<3 6=B3<5"_s;
        row("all is well", kSchema, all, 3, 0, false);
        row("own ones stay", kSchema + u"INSERT INTO bookmarks(title, position, parent) VALUES ('B1', 0, 1);"_s,
            u"2=B1<1 3=B1<1 4=F5<1 5=B2<4 6=F6<4 7=B3<6"_s, 3, 0, false);
        row("a refused folder's contents go to the root",
            kSchema + triggerBefore(u"new.title = 'F5'"_s, u"ABORT, 'no'"_s), u"2=B1<1 3=B2<1 4=F6<1 5=B3<4"_s, 3, 1,
            false);
        row("a folder that a trigger leaves out", kSchema + triggerBefore(u"new.title = 'F6'"_s, u"IGNORE"_s),
            u"2=B1<1 3=F5<1 4=B2<3 5=B3<1"_s, 3, 1, false);
        row("a refused bookmark", kSchema + triggerBefore(u"new.title = 'B2'"_s, u"FAIL, 'no'"_s),
            u"2=B1<1 3=F5<1 4=F6<3 5=B3<4"_s, 2, 1, false);
        row("no bookmark is taken", kSchema + triggerBefore(u"new.folder = 0"_s, u"ABORT, 'no'"_s), u""_s, 0, 3, true);
        row("no column dirty", u"CREATE TABLE bookmarks(%1)"_s.arg(kColumns), u""_s, 0, 1, true);
        row("no table", u"CREATE TABLE other(x)"_s, u""_s, 0, 1, true);
    }

    void phoneDatabases()
    {
        QFETCH(QString, sql);
        QVERIFY(makeDatabase(sql));
        const auto target = m_phone->phoneSide<DRMigrateAndroidBookmarks>();
        QVERIFY(target->mergeDataFrom(
            *m_phone->source(m_phone->bookmarks(3), m_phone->folders(u"0: 1; 5<0: 2; 6<5: 3; 7<6:"_s))));
        QTEST(rows(), "rows");
        QTEST(int(target->report().written), "written");
        QTEST(int(target->report().skipped.size()), "skipped");
        QTEST(target->ignoreDataType(), "ignored");
    }

    void manyRefusedOnesAreCounted()
    {
        QVERIFY(makeDatabase(kSchema + triggerBefore(u"new.title <> 'B1'"_s, u"ABORT, 'no'"_s)));
        DRBookmarkFolders folders = m_phone->folders(u"0:"_s);
        for (qint64 id = 1; id <= 250; ++id) {
            folders.front().bookmarkIds.append(id);
        }
        const auto target = m_phone->phoneSide<DRMigrateAndroidBookmarks>();
        QVERIFY(target->mergeDataFrom(*m_phone->source(m_phone->bookmarks(250), folders)));
        QCOMPARE(target->report().skipped.size(), 201U);
        QCOMPARE(target->report().skipped.front().what, u"The bookmark “B2”"_s);
        QCOMPARE(target->report().skipped.back().what, u"Further bookmarks and folders: 49"_s);
    }

    void failedMerges_data()
    {
        const DRTestTable<QString> row("sql"); // sql: empty: the file is missing
        row("missing", {});
        row("lost transaction at a bookmark", kSchema + triggerBefore(u"new.title = 'B2'"_s, u"ROLLBACK, 'full'"_s));
        row("lost transaction at a folder", kSchema + triggerBefore(u"new.title = 'F5'"_s, u"ROLLBACK, 'full'"_s));
    }

    void failedMerges()
    {
        QFETCH(QString, sql);
        QVERIFY(sql.isEmpty() || makeDatabase(sql));
        const auto target = m_phone->phoneSide<DRMigrateAndroidBookmarks>();
        QVERIFY(!target->mergeDataFrom(
            *m_phone->source(m_phone->bookmarks(3), m_phone->folders(u"0: 1; 5<0: 2; 6<0: 3"_s))));
        QCOMPARE(target->report().written, qint64{0});
        QCOMPARE(target->report().skipped.size(), 1U);
        QVERIFY(sql.isEmpty() || rows().isEmpty());
    }

    void packetsWithoutManifestAreLeftOut()
    {
        QVERIFY(makeDatabase(kSchema));
        const QString chromeFile = m_phone->inApp(u"r/app_chrome/Default/Bookmarks"_s);
        for (const std::shared_ptr<DRMigrateDataType>& target :
             {std::shared_ptr<DRMigrateDataType>(m_phone->phoneSide<DRMigrateAndroidBookmarks>()),
              std::shared_ptr<DRMigrateDataType>(m_phone->phoneSide<DRMigrateChromeBookmarks>())}) {
            target->setIgnoreDataType(true);
            QVERIFY(target->mergeDataFrom(*m_phone->source(m_phone->bookmarks(1), m_phone->folders(u"0: 1"_s))));
            QVERIFY(target->save());
            QVERIFY(rows().isEmpty() && !QFile::exists(chromeFile));
        }
    }
};

QTEST_GUILESS_MAIN(TestBookmarksOnPhone)
#include "TestBookmarksOnPhone.moc"
