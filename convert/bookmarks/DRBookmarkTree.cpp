#include "convert/bookmarks/DRBookmarkTree.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

using Node = DRBookmarkTree::Node;

constexpr qint32 kRoot = 0;

/// The folders by what the iPhone's rows say of them.
struct Directory {
    QHash<qint32, const DRIBookmarkFolder*> folderById;
    QHash<qint32, std::vector<qint32>> childrenById;
};

Directory directoryOf(const DRBookmarkFolders& folders)
{
    Directory directory;
    for (const DRIBookmarkFolder& folder : folders) {
        const auto id = static_cast<qint32>(folder.folderId);
        const auto parent = static_cast<qint32>(folder.parentFolderId.value_or(kRoot));
        directory.folderById[id] = &folder;
        if (id != parent) {
            directory.childrenById[parent].push_back(id);
        }
    }
    return directory;
}

std::vector<const DRImportedBookmark*> bookmarksIn(const DRIBookmarkFolder& folder, const DRBookmarkMap& bookmarks)
{
    std::vector<const DRImportedBookmark*> inside;
    for (const qint64 id : folder.bookmarkIds) {
        if (const auto found = bookmarks.find(id); found != bookmarks.end()) {
            inside.push_back(&found->second);
        }
    }
    return inside;
}

/// All folders below the root, empty ones too. A folder is taken out of the directory when it is reached, which ends
/// circles.
std::vector<Node> reachableNodes(Directory directory, const DRBookmarkMap& bookmarks)
{
    struct Way {
        qint32 id;
        std::size_t parent;
    };
    std::vector<Node> nodes;
    std::vector<Way> waiting{{.id = kRoot, .parent = 0}};
    while (!waiting.empty()) {
        const Way way = waiting.back();
        waiting.pop_back();
        const DRIBookmarkFolder* folder = directory.folderById.take(way.id);
        if (folder == nullptr) {
            continue;
        }
        const std::size_t position = nodes.size();
        nodes.push_back({.folder = folder, .bookmarks = bookmarksIn(*folder, bookmarks), .parent = way.parent});
        const std::vector<qint32> children = directory.childrenById.take(way.id);
        for (const qint32 child : children) {
            waiting.push_back({.id = child, .parent = position});
        }
        std::reverse(waiting.end() - static_cast<std::ptrdiff_t>(children.size()), waiting.end()); // first one next
    }
    return nodes;
}

/// Leaves out the folders below which there is no bookmark.
std::vector<Node> withoutEmptyFolders(std::vector<Node> nodes)
{
    std::vector<bool> isKept(nodes.size());
    for (std::size_t i = nodes.size(); i-- > 0;) { // what a folder holds stands behind it
        isKept[i] = isKept[i] || !nodes[i].bookmarks.empty();
        isKept[nodes[i].parent] = isKept[nodes[i].parent] || isKept[i];
    }
    std::vector<std::size_t> places(nodes.size());
    std::vector<Node> kept;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (isKept[i]) {
            places[i] = kept.size();
            nodes[i].parent = places[nodes[i].parent];
            kept.push_back(std::move(nodes[i]));
        }
    }
    return kept;
}

qint64 differentBookmarks(const std::vector<Node>& nodes)
{
    QSet<const DRImportedBookmark*> different;
    for (const Node& node : nodes) {
        for (const DRImportedBookmark* bookmark : node.bookmarks) {
            different.insert(bookmark);
        }
    }
    return different.size();
}

} // namespace

DRBookmarkTree DRBookmarkTree::of(const DRBookmarkFolders& folders, const DRBookmarkMap& bookmarks)
{
    Directory directory = directoryOf(folders);
    DRBookmarkTree tree{.hasRoot = directory.folderById.contains(kRoot)};
    tree.nodes = withoutEmptyFolders(reachableNodes(std::move(directory), bookmarks));
    tree.bookmarkCount = differentBookmarks(tree.nodes);
    return tree;
}

qint64 DRBookmarkTree::folderCount() const
{
    return std::max<qint64>(static_cast<qint64>(nodes.size()) - 1, 0);
}

qint64 DRBookmarkTree::writtenCount() const
{
    return std::accumulate(nodes.begin(), nodes.end(), qint64{0}, [](qint64 count, const Node& node) {
        return count + static_cast<qint64>(node.bookmarks.size());
    });
}
