#include "convert/bookmarks/DRBookmarkTree.h"
#include "tests/convert/bookmarks/DRBookmarksFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

/// Such as "0: 1 2; 5<0: 3": the folders in the order of the tree, in the fixture's words.
QString shown(const DRBookmarkTree& tree)
{
    QStringList parts;
    for (const DRBookmarkTree::Node& node : tree.nodes) {
        QString part = QString::number(node.folder->folderId);
        if (&node != &tree.nodes.front()) {
            part += u"<%1"_s.arg(tree.nodes[node.parent].folder->folderId);
        }
        part += u':';
        for (const DRImportedBookmark* bookmark : node.bookmarks) {
            part += u' ' + bookmark->title.mid(1);
        }
        parts << part;
    }
    return parts.join(u"; "_s);
}

} // namespace

class TestBookmarkTree : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void tree_data()
    {
        // folders: bookmarks 1 to 5 exist
        const DRTestTable<QString, QString, qint64> row("folders", "tree", "different");
        row("nothing", u""_s, u""_s, 0);
        row("no root", u"5<0: 1"_s, u""_s, 0);
        row("root and folder", u"0: 1; 5<0: 2"_s, u"0: 1; 5<0: 2"_s, 2);
        row("without parent in the root", u"5: 2; 0: 1"_s, u"0: 1; 5<0: 2"_s, 2);
        row("depth first, in the list's order", u"0:; 2<0: 2; 1<0: 1; 3<2: 3; 4<1: 4; 5<2: 5"_s,
            u"0:; 2<0: 2; 3<2: 3; 5<2: 5; 1<0: 1; 4<1: 4"_s, 5);
        row("order of bookmarks, unknown ones left out", u"0: 3 9 1 2"_s, u"0: 3 1 2"_s, 3);
        row("empty folders go, at any depth", u"0: 1; 5<0:; 6<5:; 7<6:"_s, u"0: 1"_s, 1);
        row("nothing but empty folders", u"0:; 5<0: 9"_s, u""_s, 0);
        row("a deep bookmark keeps what is around it", u"0:; 4<5:; 5<0:; 6<5:; 7<6: 1"_s, u"0:; 5<0:; 6<5:; 7<6: 1"_s,
            1);
        row("last folder of a number", u"0: 1; 5<0: 2; 5<0: 3"_s, u"0: 1; 5<0: 3"_s, 2);
        row("lower 32 bits", u"4294967296: 1; 4294967301<8589934592: 2"_s, u"4294967296: 1; 4294967301<4294967296: 2"_s,
            2);
        row("negative numbers", u"0: 1; -7<0: 2; 8<4294967289: 3"_s, u"0: 1; -7<0: 2; 8<-7: 3"_s, 3);
        row("inside itself", u"0<0: 1; 5<5: 2"_s, u"0: 1"_s, 1);
        row("a circle with the root", u"0<6: 1; 5<0: 2; 6<5: 3"_s, u"0: 1; 5<0: 2; 6<5: 3"_s, 3);
        row("a circle apart", u"0: 1; 5<6: 2; 6<5: 3"_s, u"0: 1"_s, 1);
        row("two ways to one folder", u"0: 1; 5<0: 2; 6<0:; 5<6: 3"_s, u"0: 1; 5<0: 3"_s, 2);
        row("one bookmark in two folders", u"0: 1 1; 5<0: 1 2"_s, u"0: 1 1; 5<0: 1 2"_s, 2);
    }

    void tree()
    {
        QFETCH(QString, folders);
        const DRBookmarkFolders made = DRBookmarksFixture::folders(folders);
        const DRBookmarkMap bookmarks = DRBookmarksFixture::bookmarks(5);
        const DRBookmarkTree tree = DRBookmarkTree::of(made, bookmarks);
        QTEST(shown(tree), "tree");
        QTEST(tree.bookmarkCount, "different");
    }

    void longChainIsNoDepthOfTheStack()
    {
        constexpr qint64 kFolders = 100'000;
        DRBookmarkFolders chain;
        for (qint64 id = 0; id < kFolders; ++id) {
            chain.push_back({.folderId = id, .parentFolderId = id - 1});
        }
        chain.back().bookmarkIds = {1};
        const DRBookmarkMap bookmarks = DRBookmarksFixture::bookmarks(1);
        const DRBookmarkTree tree = DRBookmarkTree::of(chain, bookmarks);
        QCOMPARE(tree.folderCount(), kFolders - 1);
        QCOMPARE(tree.nodes.back().bookmarks.size(), 1U);
    }
};

QTEST_GUILESS_MAIN(TestBookmarkTree)
#include "TestBookmarkTree.moc"
