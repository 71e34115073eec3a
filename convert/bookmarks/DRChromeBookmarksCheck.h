#pragma once

#include <QByteArray>
#include <QString>

struct DRBookmarkTree;

/// What becomes of Chrome's bookmarks file when titles and addresses stand in it without the escapes that JSON wants.
namespace DRChromeBookmarksCheck {

/// What a person has to be told before the new text reaches the phone; null when Chrome reads it as it is meant.
/// `before` is the text that it was edited from, empty when it is new. `tree` is what was put in; its titles that do harm
/// are named.
[[nodiscard]] QString warningAbout(const QByteArray& before, const QByteArray& after, const DRBookmarkTree& tree);

} // namespace DRChromeBookmarksCheck
