#pragma once

#include "convert/bookmarks/DRIBookmarkFolder.h"
#include "convert/bookmarks/DRImportedBookmark.h"

#include <vector>

/// The iPhone's folders with their bookmarks as both phone sides write them: everything that hangs below folder 0, with
/// each folder once. A flat list, so that a chain of any number of folders costs no stack. Points into the folders and
/// bookmarks that it was made from, which must outlive it.
struct DRBookmarkTree {
    struct Node {
        const DRIBookmarkFolder* folder = nullptr;
        std::vector<const DRImportedBookmark*> bookmarks; ///< directly inside, in the folder's order
        std::size_t parent = 0;                           ///< the position of the folder around it; of the root its own
    };

    /// Each folder stands before the folders in it, those in the order of the iPhone's list, each followed by all that
    /// it holds. The first is the root. Folders that hold no bookmark, at any depth, are left out: without any bookmark
    /// the list is empty.
    std::vector<Node> nodes;
    qint64 bookmarkCount = 0; ///< different bookmarks in the tree
    bool hasRoot = false;     ///< whether there is a folder 0

    /// Makes the tree. Numbers of folders are compared by their lower 32 bits; of several folders with one number the
    /// last counts. A folder that several ways lead to, or that lies in itself, stands where the first way leads.
    [[nodiscard]] static DRBookmarkTree of(const DRBookmarkFolders& folders, const DRBookmarkMap& bookmarks);

    /// Folders to be written: the root is none.
    [[nodiscard]] qint64 folderCount() const;

    /// Bookmarks to be written.
    [[nodiscard]] qint64 writtenCount() const;
};
