#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/convert/bookmarks/DRBookmarksFixture.h"
#include "tests/support/DRTestTable.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

const QString kTable =
    u"CREATE TABLE bookmarks(id INTEGER PRIMARY KEY, special_id INTEGER DEFAULT 0, parent INTEGER, type INTEGER, title "
    "TEXT, url TEXT, num_children INTEGER DEFAULT 0, order_index INTEGER, external_uuid TEXT);"_s;
const QString kIndexes = u"CREATE INDEX uuid ON bookmarks(external_uuid); CREATE INDEX one ON bookmarks(parent, "
                         "order_index); CREATE INDEX two ON bookmarks(parent, type, order_index);"_s;
const QString kRoot = u"INSERT INTO bookmarks(id, parent, type, title) VALUES (0, NULL, 1, 'Root');"_s;

QList<qint64> literalIds(DRDatabase& database, qint64 folder)
{
    QList<qint64> ids;
    DRResultSet row = database.executeQuery(u"SELECT * FROM bookmarks WHERE parent=%1 AND type=0"_s.arg(folder));
    while (row.next()) {
        ids.append(row.integer("id"));
    }
    return ids;
}

} // namespace

class TestBookmarksOfIPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRBookmarksFixture> m_phone;

    [[nodiscard]] QString database() const { return m_phone->backedUp(u"HomeDomain-Library/Safari/Bookmarks.db"_s); }

    [[nodiscard]] bool makeDatabase(const QString& sql) const { return DRBookmarksFixture::run(database(), sql); }
    [[nodiscard]] auto iPhoneSide() const { return m_phone->iPhoneSide<DRMigrateIPhoneBookmarks>(); }

private Q_SLOTS:

    void init() { m_phone = std::make_unique<DRBookmarksFixture>(); }

    void readsRows()
    {
        QVERIFY(makeDatabase(kTable + kIndexes + kRoot +
                             u"INSERT INTO bookmarks(id, parent, type, title, url, order_index) VALUES "
                             "(1, 0, 1, 'BookmarksBar', NULL, 1), (3, 1, 0, 'three', 'http://3/', 2),"
                             "(4, 1, 0, NULL, NULL, 1), (7, 0, 0, 'seven', 'http://7/', 0), (8, 99, 0, 'lost', '', 0),"
                             "(9, 0, 1, 'empty', NULL, 0), (10, 0, 2, 'no known type', NULL, 0);"_s));
        const auto phone = iPhoneSide();
        QVERIFY(phone->load());
        const DRBookmarkFolders folders{
            {.title = u"Root"_s, .folderId = 0, .bookmarkIds = {7}},
            {.title = u"BookmarksBar"_s, .folderId = 1, .parentFolderId = 0, .bookmarkIds = {4, 3}},
            {.title = u"empty"_s, .folderId = 9, .parentFolderId = 0, .bookmarkIds = {}},
        };
        QCOMPARE(phone->folders().size(), folders.size());
        QVERIFY(std::ranges::is_permutation(phone->folders(), folders));
        QCOMPARE(phone->bookmarks().at(3), (DRImportedBookmark{.title = u"three"_s, .url = u"http://3/"_s}));
        QVERIFY(phone->bookmarks().at(4).title.isNull());
        const DREntries entries = phone->entries();
        const auto records = recordsOf<DRImportedBookmark>(*entries);
        QCOMPARE(records.size(), 4U);
        QCOMPARE(records.back()->title, u"lost"_s);
        QCOMPARE(phone->report().found, qint64{4});
        QCOMPARE(phone->report().counts.at(u"folders"_s), qint64{1});
        QCOMPARE(phone->report().skipped.size(), 1U);
        QCOMPARE(phone->report().skipped.front().what, u"Bookmarks: 1"_s);
    }

    void orderIsThatOfOneStatementPerFolder_data()
    {
        const DRTestTable<QString> row("schema");
        const QString plain = u"CREATE TABLE bookmarks(id INTEGER PRIMARY KEY, parent %1, type %2, title, url, "
                              "order_index);%3"_s;
        row("the iPhone's", kTable + kIndexes);
        row("no index", kTable);
        row("by parent", kTable + u"CREATE INDEX i ON bookmarks(parent)"_s);
        row("by parent, descending", kTable + u"CREATE INDEX i ON bookmarks(parent, order_index DESC)"_s);
        row("by type", kTable + u"CREATE INDEX i ON bookmarks(type)"_s);
        row("by type, then order", kTable + u"CREATE INDEX i ON bookmarks(type, order_index)"_s);
        row("by type, then parent", kTable + u"CREATE INDEX i ON bookmarks(type, order_index, parent)"_s);
        row("of bookmarks only", kTable + u"CREATE INDEX i ON bookmarks(order_index) WHERE type=0"_s);
        row("without types", plain.arg(u""_s, u""_s, u""_s));
        row("without types, by parent", plain.arg(u""_s, u""_s, u"CREATE INDEX i ON bookmarks(parent)"_s));
        row("parents as texts", plain.arg(u"TEXT"_s, u"INTEGER"_s, u""_s));
        row("parents as reals", plain.arg(u"REAL"_s, u"INTEGER"_s, u""_s));
    }

    /// Parents are also of kinds that equal no number, or only where the column's type makes them.
    void orderIsThatOfOneStatementPerFolder()
    {
        QFETCH(QString, schema);
        const QStringList parents{u"0"_s,   u"1"_s,   u"2"_s,     u"3"_s,    u"NULL"_s, u"'2'"_s,        u"'02'"_s,
                                  u"2.0"_s, u"2.5"_s, u"x'32'"_s, u"'2x'"_s, u"''"_s,   u"4294967298"_s, u"1e300"_s};
        const QStringList types{u"0"_s, u"0"_s, u"0"_s, u"1"_s, u"'0'"_s, u"0.0"_s, u"2"_s, u"NULL"_s};
        QRandomGenerator random(7);
        QString rows = u"BEGIN;"_s;
        for (int id = 0; id < 400; ++id) {
            const QString type = id < 4 ? u"1"_s : types.at(random.bounded(types.size()));
            rows += u"INSERT INTO bookmarks(id, parent, type, order_index) VALUES (%1, %2, %3, %4);"_s.arg(id)
                        .arg(parents.at(random.bounded(parents.size())), type)
                        .arg(random.bounded(1000));
        }
        QVERIFY(makeDatabase(schema + u";"_s + rows + u"COMMIT;"_s));

        const auto phone = iPhoneSide();
        QVERIFY(phone->load());
        auto literal = DRDatabase::open(database(), DRDatabase::Profile::Source);
        QVERIFY(literal && phone->folders().size() > 40);
        qsizetype count = 0;
        for (const DRIBookmarkFolder& folder : phone->folders()) {
            QCOMPARE(folder.bookmarkIds, literalIds(*literal, folder.folderId));
            count += folder.bookmarkIds.size();
        }
        QVERIFY(count > 20);
    }

    void lackOfARootIsTold()
    {
        QVERIFY(makeDatabase(kTable + u"INSERT INTO bookmarks(id, parent, type) VALUES (5, 0, 1), (6, 5, 0)"_s));
        const auto phone = iPhoneSide();
        QVERIFY(phone->load());
        QCOMPARE(phone->report().skipped.size(), 1U);
        QVERIFY(phone->report().warnings.isEmpty());
    }

    void laterRowOfANumberCounts()
    {
        QVERIFY(makeDatabase(u"CREATE TABLE bookmarks(id, parent, type, title, url);"
                             "INSERT INTO bookmarks VALUES (0, NULL, 1, 'Root', ''), (1, 0, 0, 'earlier', ''),"
                             "(1, 0, 0, 'later', '')"_s));
        const auto phone = iPhoneSide();
        QVERIFY(phone->load());
        QCOMPARE(phone->bookmarks().at(1).title, u"later"_s);
        QCOMPARE(phone->entries()->size(), 1U);
        QCOMPARE(phone->report().found, qint64{2});
        QCOMPARE(phone->report().skipped.size(), 1U);
    }

    void unreadableSources_data()
    {
        const DRTestTable<QByteArray, QString, bool> row("content", "sql", "isNotInBackup");
        row("missing", {}, {}, true);
        row("no database", QByteArray(4096, 'x'), {}, false);
        row("truncated", QByteArray("SQLite format 3\0\4\0\1\1\0\100\40\40", 24), {}, false);
        row("no table", {}, u"CREATE TABLE other(x)"_s, false);
        row("no types", {}, u"CREATE TABLE bookmarks(id, parent)"_s, false);
    }

    void unreadableSources()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, sql);
        QVERIFY(content.isEmpty() || writeFile(database(), content));
        QVERIFY(sql.isEmpty() || makeDatabase(sql));
        const auto phone = iPhoneSide();
        QVERIFY(!phone->load());
        QVERIFY(phone->entries()->empty());
        QTEST(phone->report().isNotInBackup, "isNotInBackup");
    }
};

QTEST_GUILESS_MAIN(TestBookmarksOfIPhone)
#include "TestBookmarksOfIPhone.moc"
