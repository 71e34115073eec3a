#include "convert/bookmarks/DRBrowserBookmarkWriter.h"

#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kBrowserRoot = 1;

constexpr qint64 kIsFolder = 1;
constexpr qint64 kIsBookmark = 0;
constexpr qint64 kPosition = 0; ///< of every row: the browser then shows them in the order of their rows
constexpr qint64 kVersion = 1;
constexpr qint64 kDirty = 1; ///< not yet synchronised

const QString kInsertFolder =
    u"INSERT INTO bookmarks (title, folder, parent, position, version, dirty) VALUES (?, ?, ?, ?, ?, ?)"_s;
const QString kInsertBookmark = u"INSERT INTO bookmarks (title, url, folder, parent, position, version, created, "
                                "modified, dirty) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"_s;

/// “News”, for the report.
QString quoted(const QString& name)
{
    constexpr qsizetype kLongestName = 40;
    return u"“%1”"_s.arg(name.simplified().left(kLongestName));
}

} // namespace

DRBrowserBookmarkWriter::DRBrowserBookmarkWriter(DRDatabase& database, const DRClock& clock)
    : m_database(database),
      m_clock(clock),
      m_insertFolder(database.prepare(kInsertFolder)),
      m_insertBookmark(database.prepare(kInsertBookmark)),
      m_losses(u"bookmarks and folders"_s)
{
}

void DRBrowserBookmarkWriter::insertFolder(const DRBookmarkTree& tree)
{
    std::vector<qint64> rows; // of each folder
    rows.reserve(tree.nodes.size());
    for (const DRBookmarkTree::Node& node : tree.nodes) {
        if (!m_database.isInTransaction()) {
            return;
        }
        const bool isRoot = rows.empty();
        rows.push_back(isRoot ? kBrowserRoot : insertFolderIntoAndroidDatabase(*node.folder, rows[node.parent]));
        for (const DRImportedBookmark* bookmark : node.bookmarks) {
            if (!m_database.isInTransaction()) {
                return;
            }
            insertBookmarkIntoAndroidDatabase(*bookmark, rows.back());
        }
    }
}

qint64 DRBrowserBookmarkWriter::insertFolderIntoAndroidDatabase(const DRIBookmarkFolder& folder, qint64 parent)
{
    const bool hasRun = m_insertFolder.update({folder.title, kIsFolder, parent, kPosition, kVersion, kDirty});
    const QString reason = reasonOfRefusal(hasRun);
    if (reason.isNull()) {
        ++m_folderCount;
        return m_database.lastInsertRowId();
    }
    qCWarning(lcMigrate, "ERROR INSERTING FOLDER: %ls", qUtf16Printable(reason));
    m_losses.add(
        {.what = u"The folder "_s + quoted(folder.title), .why = reason + u"; what it holds goes to the top"_s});
    return kBrowserRoot;
}

void DRBrowserBookmarkWriter::insertBookmarkIntoAndroidDatabase(const DRImportedBookmark& bookmark, qint64 parent)
{
    const qint64 moment = m_clock.now().toMSecsSinceEpoch();
    const bool hasRun = m_insertBookmark.update(
        {bookmark.title, bookmark.url, kIsBookmark, parent, kPosition, kVersion, moment, moment, kDirty});
    const QString reason = reasonOfRefusal(hasRun);
    if (reason.isNull()) {
        ++m_bookmarkCount;
        return;
    }
    qCWarning(lcMigrate, "ERROR INSERTING BOOKMARK: %ls", qUtf16Printable(reason));
    const QString& name = bookmark.title.isEmpty() ? bookmark.url : bookmark.title;
    m_losses.add({.what = u"The bookmark "_s + quoted(name), .why = reason});
}

/// Null when the row is in the table.
QString DRBrowserBookmarkWriter::reasonOfRefusal(bool hasRun) const
{
    if (!hasRun) {
        return m_database.lastErrorMessage();
    }
    return m_database.changedRowCount() == 1 ? QString() : u"a trigger of the phone's database leaves it out"_s;
}

void DRBrowserBookmarkWriter::tell(DRMigrateReport& report) const
{
    report.written = m_bookmarkCount;
    report.counts[u"folders"_s] = m_folderCount;
    m_losses.tell(report);
}
