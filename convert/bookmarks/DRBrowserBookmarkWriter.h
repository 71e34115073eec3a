#pragma once

#include "convert/bookmarks/DRBookmarkTree.h"
#include "model/backup_entry/DRMigrateLosses.h"
#include "platform/sqlite/DRStatement.h"

class DRClock;
class DRDatabase;

/// Writes bookmarks and folders as new rows of the browser's table `bookmarks`. The database must outlive it.
class DRBrowserBookmarkWriter {
public:
    DRBrowserBookmarkWriter(DRDatabase& database, const DRClock& clock);

    /// Writes the tree: a folder, its bookmarks, then the folders in it with all that they hold. What lies in the root
    /// goes into the browser's own root. A row that is refused is left out; what a refused folder holds goes into the
    /// browser's root. Stops when the transaction around it is lost.
    void insertFolder(const DRBookmarkTree& tree);

    /// The number of the new folder's row; 1, the browser's root, when it is refused, which is logged.
    [[nodiscard]] qint64 insertFolderIntoAndroidDatabase(const DRIBookmarkFolder& folder, qint64 parent);

    /// A refused bookmark is logged.
    void insertBookmarkIntoAndroidDatabase(const DRImportedBookmark& bookmark, qint64 parent);

    /// Sets what was written, and names what was refused: the first of it one by one, the rest as a number.
    void tell(DRMigrateReport& report) const;

    [[nodiscard]] qint64 bookmarkCount() const { return m_bookmarkCount; }

private:
    [[nodiscard]] QString reasonOfRefusal(bool hasRun) const;

    DRDatabase& m_database;
    const DRClock& m_clock;
    DRStatement m_insertFolder;
    DRStatement m_insertBookmark;
    qint64 m_folderCount = 0;
    qint64 m_bookmarkCount = 0;
    DRMigrateLosses m_losses;
};
