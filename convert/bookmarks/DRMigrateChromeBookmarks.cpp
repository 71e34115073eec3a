#include "convert/bookmarks/DRMigrateChromeBookmarks.h"

#include "convert/bookmarks/DRChromeBookmarksCheck.h"
#include "convert/bookmarks/DRChromeBookmarksText.h"
#include "convert/bookmarks/DRMigrateIPhoneBookmarks.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestFile = qint64{64} * 1024 * 1024; ///< a larger one counts as unreadable

/// Chrome's file as it is; null when it cannot be read as text, none when the disk does not answer.
std::optional<QByteArray> readFile(const QString& path)
{
    const auto bytes = DRFiles::readRegularFile(path, kLargestFile);
    if (!bytes && errno == EIO) {
        return std::nullopt;
    }
    return bytes && QByteArrayView(*bytes).isValidUtf8() ? *bytes : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& text)
{
    return QDir().mkpath(QFileInfo(path).path()) && DRFiles::writeAtomically(path, text);
}

/// Whether there is something that a new file replaces, readable or not.
bool holdsAnything(const QString& path)
{
    const QFileInfo file(path);
    return file.isSymLink() || file.size() > 0;
}

} // namespace

DRMigrateChromeBookmarks::Names DRMigrateChromeBookmarks::names() const
{
    return {.app = u"Chrome"_s, .records = u"bookmarks"_s};
}

bool DRMigrateChromeBookmarks::mergeDataFrom(const DRMigrateDataType& source)
{
    DRMigrateReport outcome = report();
    outcome.found = static_cast<qint64>(source.entries()->size());
    const auto* bookmarks = dynamic_cast<const DRMigrateIPhoneBookmarks*>(&source);
    const bool hasPlace = !ignoreDataType() && !targetPath().isEmpty() && !packetID().isEmpty();
    if (hasPlace && bookmarks != nullptr) {
        const DRBookmarkTree tree = DRBookmarkTree::of(bookmarks->folders(), bookmarks->bookmarks());
        if (!tree.nodes.empty()) {
            writeTree(tree, outcome);
        } else if (outcome.found > 0) {
            setIgnoreDataType(true); // the reader has named them; the phone's packet stays as it is
        }
    }
    setReport(std::move(outcome));
    return true;
}

void DRMigrateChromeBookmarks::writeTree(const DRBookmarkTree& tree, DRMigrateReport& outcome)
{
    const QString path = pathInApp(u"r/app_chrome/Default/Bookmarks"_s);
    const auto existing = readFile(path);
    if (!existing) {
        leaveAsItIs(outcome, u"Chrome's file for them cannot be read on this computer"_s);
        return;
    }
    const QByteArray unsummed = DRChromeBookmarksText::removeChecksum(*existing);
    const auto place = DRChromeBookmarksText::findPositionForIPhoneBookmarks(unsummed);
    const bool isReplaced = !place && holdsAnything(path);
    QByteArray text = DRChromeBookmarksText::folderToString(tree, services().clock, unsummed, place);
    if (!place) {
        text = DRChromeBookmarksText::fileAround(text);
    }
    if (!writeFile(path, text)) {
        leaveAsItIs(outcome, u"Chrome's file for them cannot be written on this computer"_s);
        return;
    }
    QFile::remove(path + u".bak"_s); // often there is none
    if (isReplaced) {
        outcome.warnings.append(u"Chrome's own bookmarks on the phone cannot be added to and are replaced by the new "
                                "ones; the phone's backup keeps them"_s);
    }
    const auto finding = DRChromeBookmarksCheck::findingIn(place ? *existing : QByteArray(), text, tree);
    if (finding) {
        outcome.warnings.append(finding->warning);
    }
    if (finding && !finding->isReadable) {
        outcome.skipped.push_back({.what = u"All bookmarks"_s, .why = u"Chrome cannot read the file with them"_s});
        return;
    }
    outcome.written = tree.writtenCount();
    outcome.counts[u"folders"_s] = tree.folderCount();
}
