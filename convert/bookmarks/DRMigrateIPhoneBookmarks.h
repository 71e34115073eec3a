#pragma once

#include "convert/bookmarks/DRIBookmarkFolder.h"
#include "convert/bookmarks/DRImportedBookmark.h"
#include "model/backup_entry/DRMigrateDataType.h"

class DRDatabase;

/// Reads the bookmarks of the iPhone's browser and their folders. Entries are `DRImportedBookmark`, by ascending number.
class DRMigrateIPhoneBookmarks final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Reads "HomeDomain-Library/Safari/Bookmarks.db", table `bookmarks`. Bookmarks that no folder leads to, or all of
    /// them when there is no root, cannot be moved and are told in the report. False when the backup does not hold the
    /// database or it cannot be read.
    [[nodiscard]] bool load() override;

    /// What was read. To be called when no load is running.
    [[nodiscard]] const DRBookmarkMap& bookmarks() const { return m_bookmarks; }
    [[nodiscard]] const DRBookmarkFolders& folders() const { return m_folders; }

    /// Replaces bookmarks, entries and folders.
    void setContent(DRBookmarkMap bookmarks, DRBookmarkFolders folders);

private:
    [[nodiscard]] bool readContent(DRDatabase& database, DRMigrateReport& outcome);

    DRBookmarkMap m_bookmarks;
    DRBookmarkFolders m_folders;
};
