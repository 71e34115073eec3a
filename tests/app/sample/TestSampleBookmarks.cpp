#include "tests/app/sample/DRSampleFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

class TestSampleBookmarks : public QObject {
    Q_OBJECT

    const DRSampleFixture m_sample{3};

private Q_SLOTS:
    void storeIsWhatAnIPhoneHolds_data()
    {
        const DRTestTable<QString, QString> row("sql", "expected");
        const QString levels =
            u"WITH RECURSIVE tree(id, depth) AS (SELECT id, 0 FROM bookmarks WHERE parent IS NULL UNION "
            "ALL SELECT bookmarks.id, depth + 1 FROM bookmarks JOIN tree ON parent = tree.id) "_s;
        row("sound", u"SELECT * FROM pragma_integrity_check"_s, u"ok"_s);
        row("bookmarks", u"SELECT COUNT(*) FROM bookmarks WHERE type = 0"_s, u"360"_s);
        row("all hang below the root", levels + u"SELECT COUNT(*) = (SELECT COUNT(*) FROM bookmarks) FROM tree"_s,
            u"1"_s);
        row("the root", u"SELECT group_concat(id || type) FROM bookmarks WHERE parent IS NULL"_s, u"01"_s);
        row("folders of the system",
            u"SELECT group_concat(title) FROM (SELECT title FROM bookmarks WHERE special_id > 0 ORDER BY special_id)"_s,
            u"BookmarksBar,BookmarksMenu,com.apple.ReadingList"_s);
        row("deepest folder, below the menu",
            levels + u"SELECT MAX(depth) FROM tree NATURAL JOIN bookmarks WHERE type = 1"_s, u"7"_s);
        row("content that folders count",
            u"SELECT COUNT(*) FROM bookmarks AS folder WHERE num_children <> (SELECT COUNT(*) FROM bookmarks WHERE "
            u"parent "
            "= folder.id)"_s,
            u"0"_s);
        row("places taken twice",
            u"SELECT COUNT(*) - COUNT(DISTINCT parent || ' ' || order_index) FROM bookmarks WHERE parent IS NOT NULL"_s,
            u"0"_s);
        row("bookmarks of the bar, by its index",
            u"SELECT group_concat(id) FROM (SELECT * FROM bookmarks WHERE parent = 1 AND type = 0)"_s, u"3,2,5,4"_s);
        row("what Chrome's file cannot take",
            u"SELECT COUNT(*) FROM bookmarks WHERE title || ifnull(url, '') GLOB '*[\"\\]*' OR url GLOB '*[\"\\]*'"_s,
            u"0"_s);
        row("no title, and empty ones",
            u"SELECT SUM(title IS NULL) || ',' || SUM(title = '') || ',' || SUM(type = 0 AND url IS NULL) FROM bookmarks"_s,
            u"1,2,1"_s);
    }

    void storeIsWhatAnIPhoneHolds()
    {
        QFETCH(const QString, sql);
        QTEST(DRSampleFixture::answer(m_sample.stored(u"HomeDomain-Library/Safari/Bookmarks.db"_s), sql), "expected");
    }
};

QTEST_GUILESS_MAIN(TestSampleBookmarks)
#include "TestSampleBookmarks.moc"
