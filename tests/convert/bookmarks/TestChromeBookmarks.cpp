#include "convert/bookmarks/DRChromeBookmarksText.h"
#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "tests/convert/bookmarks/DRBookmarksFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

using DRChromeBookmarksText::Place;

/// Moves on by a second each time that it is read.
class TickingClock final : public DRClock {
public:
    [[nodiscard]] QDateTime now() const override { return QDateTime::fromSecsSinceEpoch(++m_seconds, Qt::UTC); }

private:
    mutable qint64 m_seconds = 0;
};

/// As Chrome writes it.
const QByteArray kOwnFile = R"({
   "checksum": "5ad2cf3f5b8ae3b1c6f9c1a1c3a8e9d0",
   "roots": {
      "bookmark_bar": {
         "children": [ {
            "date_added": "13043833689000000",
            "id": "5",
            "name": "[own]",
            "type": "url",
            "url": "http://own/"
         } ],
         "name": "Lesezeichenleiste",
         "type": "folder"
      },
      "synced": {
         "children": [  ],
         "name": "Mobile Lesezeichen",
         "type": "folder"
      }
   },
   "version": 1
}
)";

/// Bookmark 1 in the root and bookmark 2 in folder 5, in a file that was not there.
const QByteArray kNewFile = R"({
"roots": {
"bookmark_bar": {
"children": [   ],
"date_added": "0",
"date_modified": "0",
"id": "1",
"name": "Desktop Bookmarks",
"type": "folder"
},
"other": {
"children": [   ],
"date_added": "0",
"date_modified": "0",
"id": "2",
"name": "Other Bookmarks",
"type": "folder"
},
"synced": {
"children": [ {
"children": [ {
"date_added": "13993600890000000",
"id": "10000",
"name": "B2",
"type": "url",
"url": "http://2/"
} ],
"date_added": "13993600890000000",
"date_modified": "13993600890000000",
"id": "10001",
"name": "F5",
"type": "folder"
},
{
"date_added": "13993600890000000",
"id": "10002",
"name": "B1",
"type": "url",
"url": "http://1/"
} ],
"date_added": "13993600890000000",
"date_modified": "13993600890000000",
"id": "10003",
"name": "Mobile Bookmarks",
"type": "folder"
}
},
"version": 1
}
)";

/// Chrome's own file with an entry of that name among the mobile ones.
QByteArray ownFileWith(const QByteArray& name)
{
    return QByteArray(kOwnFile).replace("[  ]", "[ {\n\"name\": \"" + name + "\"\n} ]");
}

QByteArray nodeOf(int id, const QByteArray& title)
{
    return "{\n\"date_added\": \"13993600890000000\",\n\"id\": \"" + QByteArray::number(id) + "\",\n\"name\": \"" +
           title + "\",\n\"type\": \"url\",\n\"url\": \"http://1/\"\n}";
}

} // namespace

class TestChromeBookmarks : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRBookmarksFixture> m_phone;

    [[nodiscard]] QString file() const { return m_phone->inApp(u"r/app_chrome/Default/Bookmarks"_s); }

    [[nodiscard]] QByteArray written() const { return readFile(file()); }

    /// The Chrome side after a merge of one bookmark in the root.
    [[nodiscard]] std::shared_ptr<DRMigrateChromeBookmarks> merged(const QString& title = u"B1"_s) const
    {
        DRBookmarkMap bookmarks = m_phone->bookmarks(1);
        bookmarks[1].title = title;
        const auto chrome = m_phone->phoneSide<DRMigrateChromeBookmarks>();
        return chrome->mergeDataFrom(*m_phone->source(bookmarks, m_phone->folders(u"0: 1"_s))) ? chrome : nullptr;
    }

private Q_SLOTS:

    void init() { m_phone = std::make_unique<DRBookmarksFixture>(u"com.android.chrome"_s); }

    void newFile()
    {
        const auto chrome = m_phone->phoneSide<DRMigrateChromeBookmarks>();
        QVERIFY(
            chrome->mergeDataFrom(*m_phone->source(m_phone->bookmarks(2), m_phone->folders(u"0: 1; 5<0: 2; 6<5:"_s))));
        QCOMPARE(written(), kNewFile);
        QCOMPARE(chrome->report().written, qint64{2});
        QCOMPARE(chrome->report().counts.at(u"folders"_s), qint64{1});
        QVERIFY(chrome->report().warnings.isEmpty() && chrome->report().skipped.empty());
    }

    void orderAndDatesOfNodes()
    {
        const DRBookmarkFolders folders = m_phone->folders(u"0: 1; 5<0: 2; 6<5: 3; 7<0: 4 5"_s);
        const DRBookmarkMap bookmarks = m_phone->bookmarks(5);
        const QByteArray text = DRChromeBookmarksText::folderToString(DRBookmarkTree::of(folders, bookmarks),
                                                                      TickingClock(), "[]", Place{.position = 1});
        QStringList nodes; // each with its date in seconds; a folder's lines end with its own
        QString date;
        for (const QString& line : QString::fromUtf8(text).split(u'\n')) {
            date = line.startsWith(u"\"date_added") ? line.section(u'"', 3, 3).chopped(7) : date;
            if (line.startsWith(u"\"id")) {
                nodes << line.section(u'"', 3, 3).mid(3) + u'@' + date;
            }
            if (line.startsWith(u"\"name")) {
                nodes.last() += line.section(u'"', 3, 3);
            }
        }
        QCOMPARE(nodes.join(u' '), u"00@3B3 01@3F6 02@2B2 03@2F5 04@4B4 05@4B5 06@4F7 07@1B1"_s);
    }

    void editInPlace_data()
    {
        const DRTestTable<QByteArray, QByteArray> add("before", "after");
        const QByteArray sum = "\n   \"checksum\": \"5ad2cf3f5b8ae3b1c6f9c1a1c3a8e9d0\",";
        const auto row = [&](const char* name, const QByteArray& before, const QByteArray& from, const QByteArray& to) {
            QByteArray after = before;
            after.replace(sum, "\n   ").replace(from, to);
            add(name, before, after);
        };
        const QByteArray node = nodeOf(10000, "B1");
        row("empty list", kOwnFile, "[  ]", "[  " + node + ']');
        row("with an entry", ownFileWith("own"), "own\"\n} ]", "own\"\n} ,\n" + node + ']');
        row("without checksum", QByteArray(kOwnFile).replace(sum, ""), "[  ]", "[  " + node + ']');
        row("letter case", QByteArray(kOwnFile).replace("synced", "SyncED"), "[  ]", "[  " + node + ']');
        row("bracket in a name", ownFileWith("a ] b"), "b\"\n} ]", "b\"\n} ,\n" + node + ']');
        row("other letters", ownFileWith("\xC3\xA9"), "\xC3\xA9\"\n} ]", "\xC3\xA9\"\n} ,\n" + node + ']');
    }

    void editInPlace()
    {
        QFETCH(QByteArray, before);
        QVERIFY(writeFile(file(), before) && writeFile(file() + u".bak"_s, before));
        const auto chrome = merged();
        QTEST(written(), "after");
        QVERIFY(!QFile::exists(file() + u".bak"_s));
        QVERIFY(chrome->report().warnings.isEmpty());
    }

    void titles_data()
    {
        const DRTestTable<QString, QByteArray, QString> row("title", "escaped", "warning");
        const QString broken = u"will not read"_s;
        const QString changed = u"otherwise than the iPhone"_s;
        row("none", {}, {}, {});
        row("printable", u"a b~ <&>/'"_s, "a b~ <&>/'", {});
        row("accent", u"caf\u00E9"_s, "caf\\u00E9", {});
        row("edges", u"\u001F\u007F\uFFFD\t"_s, R"(\u001F\u007F\uFFFD\u0009)", {});
        row("beyond the plane", u"\U00010000\U0001F34E\U0010FFFF"_s, R"(\uD800\uDC00\uD83C\uDF4E\uDBFF\uDFFF)", {});
        row("lone surrogate", QString(QChar(0xD83C)), "\\uFFFD", {});
        row("quotation mark", u"a \"b\""_s, "a \"b\"", broken);
        row("backslash at the end", u"a\\"_s, "a\\", broken);
        row("escape that JSON lacks", u"C:\\dir"_s, "C:\\dir", broken);
        row("short number", u"\\u12"_s, "\\u12", broken);
        row("escape that JSON has", u"C:\\new"_s, "C:\\new", changed);
        row("a field slipped in", uR"(a","b":"c)"_s, R"(a","b":"c)", changed);
    }

    void titles()
    {
        QFETCH(QString, title);
        QFETCH(QByteArray, escaped);
        QFETCH(QString, warning);
        QCOMPARE(DRChromeBookmarksText::escapeBookmarkString(title), escaped);
        const auto chrome = merged(title);
        QVERIFY(written().contains(nodeOf(10000, escaped)));
        const QStringList warnings = chrome->report().warnings;
        QCOMPARE(warnings.isEmpty(), warning.isEmpty());
        QVERIFY2(warning.isEmpty() || (warnings.first().contains(warning) && warnings.first().contains(title)),
                 qPrintable(warnings.join(u'\n')));
        const bool isLoss = warning == u"will not read"_s;
        QCOMPARE(chrome->report().skipped.size(), isLoss ? 1U : 0U);
        QCOMPARE(chrome->report().written, qint64{isLoss ? 0 : 1});
    }

    void badFiles_data()
    {
        // isReplaced: by a file that begins anew
        const DRTestTable<QByteArray, bool, QString> row("before", "isReplaced", "warning");
        const QString replaced = u"are replaced"_s;
        const QString damaged = u"damaged already"_s;
        row("empty", "", true, {});
        row("without place", "{\n\"roots\": {\n}\n}\n", true, replaced);
        row("truncated", kOwnFile.left(kOwnFile.indexOf("[  ]") + 2), true, replaced);
        row("not UTF-8", ownFileWith("\xE9"), true, replaced);
        row("damaged before", kOwnFile + "}", false, damaged);
        row("brackets in a title", ownFileWith("}]"), false, u"do not fit"_s);
        row("checksum at the end", R"({"roots": {"synced": {"children": []}, "checksum": "1"}, "version": 1})", false,
            u"do not fit"_s);
    }

    void badFiles()
    {
        QFETCH(QByteArray, before);
        QFETCH(QString, warning);
        QVERIFY(writeFile(file(), before));
        const auto chrome = merged();
        QTEST(written().startsWith("{\n\"roots\": {\n\"bookmark_bar\""), "isReplaced");
        QVERIFY(written().contains(nodeOf(10000, "B1")));
        const QString warnings = chrome->report().warnings.join(u'\n');
        QCOMPARE(warnings.isEmpty(), warning.isEmpty());
        QVERIFY2(warnings.contains(warning), qPrintable(warnings));
        QTEST(chrome->report().skipped.empty(), "isReplaced"); // Chrome reads one that begins anew
    }

    void linkIsReplacedNotFollowed()
    {
        const QString target = m_phone->path(u"elsewhere"_s);
        QVERIFY(writeFile(target, kOwnFile) && QDir().mkpath(QFileInfo(file()).path()));
        QVERIFY(QFile::link(target, file()));
        const auto chrome = merged();
        QCOMPARE(readFile(target), kOwnFile);
        QVERIFY(!QFileInfo(file()).isSymLink() && written().contains("Desktop Bookmarks"));
        QCOMPARE(chrome->report().warnings.size(), 1);
    }

    void fileThatCannotBeWritten_data()
    {
        // folder: stands where the bookmarks file should
        // obstacle: a file
        const DRTestTable<QString, QString> row("folder", "obstacle");
        row("a folder in its place", u"r/app_chrome/Default/Bookmarks/x"_s, u"r/app_chrome/Default/Bookmarks.bak"_s);
        row("a file in the folder's place", u"r/app_chrome"_s, u"r/app_chrome/Default"_s);
    }

    void fileThatCannotBeWritten()
    {
        QFETCH(QString, folder);
        QFETCH(QString, obstacle);
        QVERIFY(QDir().mkpath(m_phone->inApp(folder)));
        QVERIFY(writeFile(m_phone->inApp(obstacle), "kept"));
        const auto chrome = merged();
        QVERIFY(chrome && chrome->ignoreDataType() && chrome->save());
        QCOMPARE(chrome->report().written, qint64{0});
        QCOMPARE(chrome->report().skipped.size(), 1U);
        QCOMPARE(readFile(m_phone->inApp(obstacle)), QByteArray("kept"));
    }

    void nothingToWrite_data()
    {
        const DRTestTable<QString> row("folders");
        row("no folders", u""_s);
        row("no root", u"5<0: 1"_s);
        row("nothing but empty folders", u"0:; 5<0:; 6<5:"_s);
    }

    void nothingToWrite()
    {
        QFETCH(QString, folders);
        QVERIFY(writeFile(file(), kOwnFile));
        const auto chrome = m_phone->phoneSide<DRMigrateChromeBookmarks>();
        QVERIFY(chrome->mergeDataFrom(*m_phone->source(m_phone->bookmarks(1), m_phone->folders(folders))));
        QCOMPARE(written(), kOwnFile);
        QVERIFY(chrome->ignoreDataType());
    }

    void places_data()
    {
        const DRTestTable<QByteArray, int, bool> row("text", "position", "notEmpty"); // position: -1: none
        row("nothing", {}, -1, false);
        row("without quotes", "synced \"children\" []", -1, false);
        row("children before", R"("children" "synced" [])", -1, false);
        row("no bracket", R"([ "synced" "children" ])", -1, false);
        row("no end", R"("synced""children"[{])", -1, false);
        row("empty", R"("synced""children"[])", 19, false);
        row("nested", R"("synced""children"[{[]{}}]])", 25, true);
        row("a brace too many", R"("synced""children"[}]{])", 22, true);
    }

    void places()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, position);
        QFETCH(bool, notEmpty);
        const auto place = DRChromeBookmarksText::findPositionForIPhoneBookmarks(text);
        QCOMPARE(place.has_value(), position >= 0);
        QVERIFY(!place || *place == (Place{.position = position, .notEmpty = notEmpty}));
    }

    void checksums_data()
    {
        const DRTestTable<QByteArray, QByteArray> row("text", "without");
        row("first", "{\"checkSUM\": \"1\",\n\"a\": 1,}", "{\n\"a\": 1,}");
        row("no comma behind", R"({"a": 1,"checksum": 1})", R"({"a": 1,"checksum": 1})");
        row("only the first", R"("checksum","checksum",)", R"("checksum",)");
    }

    void checksums()
    {
        QFETCH(QByteArray, text);
        QTEST(DRChromeBookmarksText::removeChecksum(text), "without");
    }

    void longChainOfFolders()
    {
        constexpr qint64 kFolders = 100'000;
        DRBookmarkFolders chain;
        for (qint64 id = 0; id < kFolders; ++id) {
            chain.push_back({.title = u"F"_s, .folderId = id, .parentFolderId = id - 1});
        }
        chain.back().bookmarkIds = {1};
        const auto chrome = m_phone->phoneSide<DRMigrateChromeBookmarks>();
        QVERIFY(chrome->mergeDataFrom(*m_phone->source(m_phone->bookmarks(1), chain)));
        QCOMPARE(written().count("\"folder\""), kFolders + 2);
        QVERIFY(chrome->report().warnings.join(u' ').contains(u"too many folders"));
    }
};

QTEST_GUILESS_MAIN(TestChromeBookmarks)
#include "TestChromeBookmarks.moc"
