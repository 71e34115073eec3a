#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"

#include "convert/bookmarks/DRBookmarkTree.h"
#include "convert/bookmarks/DRFolderBookmarkIds.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRLog.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kBookmarksDatabase = u"HomeDomain-Library/Safari/Bookmarks.db"_s;

struct BookmarkReading {
    DRBookmarkMap bookmarks;
    qint64 replacedCount = 0; ///< rows whose number a later one has, too
    bool isComplete = true;
};

BookmarkReading readBookmarks(DRDatabase& database)
{
    BookmarkReading reading;
    DRResultSet row = database.executeQuery(u"SELECT * FROM bookmarks WHERE type=0"_s);
    while (row.next()) {
        const auto before = reading.bookmarks.size();
        reading.bookmarks.insert_or_assign(reading.bookmarks.end(), row.integer("id"),
                                           DRImportedBookmark{.title = row.string("title"), .url = row.string("url")});
        reading.replacedCount += reading.bookmarks.size() == before ? 1 : 0;
    }
    reading.isComplete = !row.hasFailed();
    return reading;
}

struct FolderReading {
    DRBookmarkFolders folders;
    bool isComplete = true;
};

FolderReading readFolders(DRDatabase& database)
{
    FolderReading reading;
    DRFolderBookmarkIds idsOfFolders(database);
    DRResultSet row = database.executeQuery(u"SELECT * FROM bookmarks WHERE type=1"_s);
    while (row.next()) {
        const auto parent = row.isNull("parent") ? std::nullopt : std::optional(row.integer("parent"));
        reading.folders.emplace_back().importFolder(idsOfFolders, row.integer("id"), row.string("title"), parent);
    }
    reading.isComplete = !row.hasFailed() && idsOfFolders.isComplete();
    return reading;
}

/// What cannot be moved because no folder leads there; the iPhone does not show it either.
void tellUnplaced(const DRBookmarkTree& tree, qint64 found, DRMigrateReport& outcome)
{
    if (found > 0 && !tree.hasRoot) {
        outcome.skipped.push_back(
            {.what = u"All bookmarks"_s, .why = u"the iPhone's list of them in the backup has no root folder"_s});
        return;
    }
    if (tree.bookmarkCount < found) {
        outcome.skipped.push_back({.what = u"Bookmarks: %1"_s.arg(found - tree.bookmarkCount),
                                   .why = u"no folder of the iPhone's list leads to them"_s});
    }
}

} // namespace

void DRIBookmarkFolder::importFolder(DRFolderBookmarkIds& idsOfFolders,
                                     qint64 id,
                                     const QString& titleOfFolder,
                                     std::optional<qint64> parentId)
{
    bookmarkIds = idsOfFolders.inFolder(id);
    title = titleOfFolder;
    parentFolderId = parentId;
    folderId = id;
}

bool DRMigrateIPhoneBookmarks::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    DRMigrateReport outcome{.counts = {{u"folders"_s, 0}}};
    outcome.isNotInBackup = !DRIPhoneBackupFiles::holds(sourcePath(), kBookmarksDatabase);
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kBookmarksDatabase, services().folders.temporary);
    if (!database && !outcome.isNotInBackup) {
        qCWarning(lcMigrate, "The bookmarks database of the backup cannot be opened");
    }
    const bool isRead = database && readContent(**database, outcome);
    setReport(std::move(outcome));
    return isRead;
}

bool DRMigrateIPhoneBookmarks::readContent(DRDatabase& database, DRMigrateReport& outcome)
{
    BookmarkReading read = readBookmarks(database);
    FolderReading folders = readFolders(database);
    if (!read.isComplete || !folders.isComplete) {
        qCWarning(lcMigrate, "The bookmarks of the backup cannot be read: %ls",
                  qUtf16Printable(database.lastErrorMessage()));
        if (read.bookmarks.empty()) {
            outcome.skipped.push_back({.what = u"All bookmarks"_s, .why = u"their database cannot be read"_s});
            return false;
        }
        outcome.skipped.push_back(
            {.what = u"Some bookmarks"_s, .why = u"the backup's bookmarks database is damaged"_s});
    }
    if (read.replacedCount > 0) {
        outcome.skipped.push_back({.what = u"Bookmarks: %1"_s.arg(read.replacedCount),
                                   .why = u"later ones have the same numbers in the iPhone's list"_s});
    }
    const DRBookmarkTree tree = DRBookmarkTree::of(folders.folders, read.bookmarks);
    const auto found = static_cast<qint64>(read.bookmarks.size());
    tellUnplaced(tree, found, outcome);
    outcome.found = found + read.replacedCount;
    outcome.counts[u"folders"_s] = tree.folderCount();
    setContent(std::move(read.bookmarks), std::move(folders.folders));
    return true;
}

void DRMigrateIPhoneBookmarks::setContent(DRBookmarkMap bookmarks, DRBookmarkFolders folders)
{
    m_bookmarks = std::move(bookmarks);
    m_folders = std::move(folders);
    DREntryList list;
    list.reserve(m_bookmarks.size());
    for (const auto& [id, bookmark] : m_bookmarks) {
        list.emplace_back(bookmark);
    }
    setEntries(std::move(list));
}
