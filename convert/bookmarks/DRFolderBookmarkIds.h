#pragma once

#include "platform/sqlite/DRStatement.h"

#include <QHash>
#include <QList>

class DRDatabase;

/// Which bookmarks lie directly in a folder of the iPhone's database: what "SELECT * FROM bookmarks WHERE parent=... AND
/// type=0" answers, in the order of its rows. That order belongs to the index that SQLite takes: with the iPhone's own it
/// is the order of the list on the screen, without any the order of the table.
///
/// Costs the same for each bookmark, whatever the indexes: where none leads to the rows of one folder, all of them are
/// read in one pass. The database must outlive it.
class DRFolderBookmarkIds {
public:
    explicit DRFolderBookmarkIds(DRDatabase& database);

    /// The numbers of the bookmarks in the folder; a folder asked for again is not read again.
    [[nodiscard]] QList<qint64> inFolder(qint64 folderId);

    /// Whether every row could be read so far.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    void readAllFolders(DRDatabase& database);

    DRStatement m_rowsOfFolder;
    QHash<qint64, QList<qint64>> m_ids; ///< by folder
    bool m_hasAll = false;              ///< a folder that is not in `m_ids` is empty
    bool m_isComplete = true;
};
