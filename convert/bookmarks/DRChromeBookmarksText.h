#pragma once

#include "convert/bookmarks/DRBookmarkTree.h"

#include <QByteArray>

#include <optional>

class DRClock;

/// The text of Chrome's bookmarks file, as UTF-8 bytes. It is put together and edited as text: a JSON library would
/// write what the phone's own Chrome has in the file otherwise than it stands there. See docs/formats/chrome-bookmarks.md.
namespace DRChromeBookmarksText {

/// The text as it stands between the quotes: ASCII from blank to tilde as it is, all else as "\uXXXX", beyond U+FFFF as
/// two of them. Quotation mark and backslash are not escaped (kept): what that does to the file is told by
/// `DRChromeBookmarksCheck`. Empty for none.
[[nodiscard]] QByteArray escapeBookmarkString(const QString& text);

/// Where new nodes go into an existing file.
struct Place {
    qsizetype position = 0; ///< of the "]" that ends the children of "synced"
    bool notEmpty = false;  ///< whether they hold an object already

    bool operator==(const Place&) const = default;
};

/// The first "[" behind the first `"children"` behind the first `"synced"`, in any letter case, and the "]" that belongs
/// to it. Brackets inside texts count like others (kept). None when one of these is missing.
[[nodiscard]] std::optional<Place> findPositionForIPhoneBookmarks(QByteArrayView text);

/// The text without what stands from the first `"checksum"`, in any letter case, to the next comma; as it is when there
/// is none. Chrome would take a wrong sum for damage.
[[nodiscard]] QByteArray removeChecksum(const QByteArray& text);

/// With a place, the existing text with the root's folders and bookmarks put in; else the node "synced" that holds them.
/// Folders stand before bookmarks. Numbers run from 10000 on, a folder's after those of all in it; dates are in
/// ten-millionths of a second since 1970, one for each folder and the bookmarks in it. Empty when the tree is.
[[nodiscard]] QByteArray folderToString(const DRBookmarkTree& tree,
                                        const DRClock& clock,
                                        const QByteArray& existing,
                                        const std::optional<Place>& place);

/// A file that has no bookmarks but those of the node "synced".
[[nodiscard]] QByteArray fileAround(const QByteArray& syncedNode);

} // namespace DRChromeBookmarksText
