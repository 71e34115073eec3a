#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <vector>

class DRFolderBookmarkIds;

/// One folder of the iPhone's bookmarks. Folder 0 is the root of the tree.
struct DRIBookmarkFolder {
    QString title; ///< real ones are also names of the system, such as "BookmarksBar"
    qint64 folderId = 0;
    std::optional<qint64> parentFolderId; ///< none counts as 0
    QList<qint64> bookmarkIds;            ///< the bookmarks directly inside, in the order of the iPhone's list

    bool operator==(const DRIBookmarkFolder&) const = default;

    /// Fills the folder. Whether its bookmarks could all be read is known to `idsOfFolders`.
    void importFolder(DRFolderBookmarkIds& idsOfFolders,
                      qint64 id,
                      const QString& titleOfFolder,
                      std::optional<qint64> parentId);
};

/// Folders in the order of their rows.
using DRBookmarkFolders = std::vector<DRIBookmarkFolder>;
