#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

struct DRBookmarkTree;

/// What becomes of Chrome's bookmarks file when titles and addresses stand in it without the escapes that JSON wants.
namespace DRChromeBookmarksCheck {

struct Finding {
    QString warning;         ///< what a person has to be told before the new text reaches the phone
    bool isReadable = false; ///< Chrome reads it, but some of it otherwise than it is meant
};

/// None when Chrome reads the new text as it is meant. `before` is the text that it was edited from, empty when it is
/// new. `tree` is what was put in; its titles that do harm are named.
[[nodiscard]] std::optional<Finding>
findingIn(const QByteArray& before, const QByteArray& after, const DRBookmarkTree& tree);

} // namespace DRChromeBookmarksCheck
