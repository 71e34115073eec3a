// The cost of a bookmark must not depend on how many there are, nor on the iPhone's indexes, nor on how deep it lies: reading, and
// writing into the browser's database and Chrome's file, at 10,000 and at 100,000 bookmarks in folders that lie 100 deep.

#include "convert/bookmarks/DRMigrateAndroidBookmarks.h"
#include "convert/bookmarks/DRMigrateChromeBookmarks.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kDepth = 100;
constexpr qint64 kBookmarksPerFolder = 10;
constexpr qint64 kFirstBookmark = 1'000'000;

const QString kTable =
    u"CREATE TABLE bookmarks (id INTEGER PRIMARY KEY, special_id INTEGER DEFAULT 0, parent INTEGER, type INTEGER, "
    "title TEXT, url TEXT, num_children INTEGER DEFAULT 0, editable INTEGER DEFAULT 1, deletable INTEGER DEFAULT 1, "
    "hidden INTEGER DEFAULT 0, order_index INTEGER, external_uuid TEXT);"
    "INSERT INTO bookmarks (id, type, title) VALUES (0, 1, 'Root');"_s;
const QString kIndexes = u"CREATE INDEX one ON bookmarks (parent, order_index);"
                         "CREATE INDEX two ON bookmarks (parent, type, order_index);"
                         "CREATE INDEX three ON bookmarks (external_uuid);"_s;
const QString kBrowserTable =
    u"CREATE TABLE bookmarks (_id INTEGER PRIMARY KEY AUTOINCREMENT, title TEXT, url TEXT, folder INTEGER NOT NULL "
    "DEFAULT 0, parent INTEGER, position INTEGER NOT NULL, version INTEGER NOT NULL DEFAULT 1, created INTEGER, "
    "modified INTEGER, dirty INTEGER NOT NULL DEFAULT 0);"
    "INSERT INTO bookmarks (title, folder, position) VALUES ('Bookmarks', 1, 0);"_s;

/// Chains of folders below the root, each 100 long; every bookmark of a folder lies at another place of the table.
bool writeBackup(const DRTestServices& test, qint64 bookmarks, bool isIndexed)
{
    const QString folder = test.root.filePath(u"backup"_s);
    QDir().mkpath(folder);
    auto database = DRDatabase::open(folder + u'/' + sha1HexString(u"HomeDomain-Library/Safari/Bookmarks.db"_s),
                                     DRDatabase::Profile::Create);
    if (!database || !database->executeScript(isIndexed ? kTable + kIndexes : kTable)) {
        return false;
    }
    DRTransaction transaction(*database);
    DRStatement row = database->prepare(
        u"INSERT INTO bookmarks (id, parent, type, title, url, order_index) VALUES (?, ?, ?, ?, ?, ?)"_s);
    const qint64 folders = bookmarks / kBookmarksPerFolder;
    bool isDone = true;
    for (qint64 id = 1; id <= folders; ++id) {
        const qint64 parent = id % kDepth == 1 ? 0 : id - 1;
        isDone = isDone && row.update({id, parent, qint64{1}, u"Folder %1"_s.arg(id), std::monostate(), id});
    }
    for (qint64 i = 0; i < bookmarks; ++i) {
        isDone = isDone && row.update({kFirstBookmark + i, i % folders + 1, qint64{0}, u"The page number %1"_s.arg(i),
                                       u"http://www.example.org/pages/%1.html?from=list"_s.arg(i), bookmarks - i});
    }
    return isDone && transaction.commit();
}

bool writeBrowserDatabase(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path);
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    return database && database->executeScript(kBrowserTable);
}

void count(benchmark::State& state)
{
    state.counters["per bookmark"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void readBookmarks(benchmark::State& state)
{
    DRTestServices test;
    if (!writeBackup(test, state.range(0), state.range(1) != 0)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhoneBookmarks source(test.services);
        source.setSourcePath(test.root.filePath(u"backup"_s));
        if (!source.load() || source.report().found != state.range(0) || !source.report().warnings.isEmpty()) {
            state.SkipWithError("the bookmarks were not read");
            return;
        }
    }
    count(state);
}

template <typename Target> void writeBookmarks(benchmark::State& state)
{
    DRTestServices test;
    const QString packetID = u"app"_s;
    DRMigrateIPhoneBookmarks source(test.services);
    source.setSourcePath(test.root.filePath(u"backup"_s));
    if (!writeBackup(test, state.range(0), true) || !source.load()) {
        state.SkipWithError("the backup cannot be made");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        QFile::remove(test.root.filePath(u"work/app/apps/app/r/app_chrome/Default/Bookmarks"_s));
        const bool isMade = writeBrowserDatabase(test.root.filePath(u"work/app/apps/app/db/browser2.db"_s));
        Target target(test.services);
        target.setTargetPath(test.root.filePath(u"work"_s));
        target.setPacketID(packetID);
        state.ResumeTiming();
        if (!isMade || !target.mergeDataFrom(source) || target.report().written != state.range(0)) {
            state.SkipWithError("the bookmarks were not written");
            return;
        }
    }
    count(state);
}

} // namespace

BENCHMARK(readBookmarks)
    ->ArgNames({"bookmarks", "indexed"})
    ->ArgsProduct({{10'000, 100'000}, {1, 0}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(writeBookmarks<DRMigrateAndroidBookmarks>)
    ->ArgName("bookmarks")
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(writeBookmarks<DRMigrateChromeBookmarks>)
    ->ArgName("bookmarks")
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
