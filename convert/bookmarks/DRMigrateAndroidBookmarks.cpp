#include "convert/bookmarks/DRMigrateAndroidBookmarks.h"

#include "convert/bookmarks/DRBrowserBookmarkWriter.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRNeededColumns.h"
#include "platform/sqlite/DRTransaction.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const DRNeededColumns kNeeded{
    "bookmarks", {"title", "url", "folder", "parent", "position", "version", "created", "modified", "dirty"}};

} // namespace

DRMigrateAndroidBookmarks::Names DRMigrateAndroidBookmarks::names() const
{
    return {.app = u"The browser"_s, .records = u"bookmarks"_s};
}

bool DRMigrateAndroidBookmarks::mergeDataFrom(const DRMigrateDataType& source)
{
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(source.entries()->size());
    const auto* bookmarks = dynamic_cast<const DRMigrateIPhoneBookmarks*>(&source);
    if (ignoreDataType() || bookmarks == nullptr) {
        setReport(std::move(outcome));
        return true;
    }
    auto database = DRDatabase::open(pathInApp(u"db/browser2.db"_s), DRDatabase::Profile::Phone);
    if (!database) {
        skipAll(outcome, u"the browser's database on the phone cannot be opened"_s);
    }
    const bool isMerged =
        database && mergeTree(*database, DRBookmarkTree::of(bookmarks->folders(), bookmarks->bookmarks()), outcome);
    setReport(std::move(outcome));
    return isMerged;
}

bool DRMigrateAndroidBookmarks::mergeTree(DRDatabase& database, const DRBookmarkTree& tree, DRMigrateReport& outcome)
{
    if (!database.persistWriteAheadLog()) {
        qCWarning(lcMigrate, "The browser's write-ahead log cannot be kept: %ls",
                  qUtf16Printable(database.lastErrorMessage()));
    }
    if (const QString lack = kNeeded.lackIn(database); !lack.isNull()) {
        leaveAsItIs(outcome, u"the browser's database on this phone has no "_s + lack);
        return true;
    }
    DRTransaction transaction(database);
    DRBrowserBookmarkWriter writer(database, services().clock);
    if (transaction.isOpen()) {
        writer.insertFolder(tree);
    }
    if (!transaction.isOpen()) {
        skipAll(outcome, database.lastErrorMessage());
        return false;
    }
    writer.tell(outcome);
    if (writer.bookmarkCount() == 0 && outcome.found > 0) {
        setIgnoreDataType(true); // each is named, here or by the reader; without a commit nothing has changed
        outcome.counts.clear();
        return true;
    }
    if (!transaction.commit()) {
        outcome.written = 0;
        outcome.counts.clear();
        skipAll(outcome, database.lastErrorMessage());
        return false;
    }
    return true;
}
