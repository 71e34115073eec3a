#include "convert/bookmarks/DRFolderBookmarkIds.h"

#include "platform/sqlite/DRDatabase.h"

using namespace Qt::StringLiterals;

namespace {

const QString kRowsOfFolder = u"SELECT * FROM bookmarks WHERE parent=? AND type=0"_s;

/// The rows that the statement above finds for any folder. A number without affinity, as `+` makes it, is compared like
/// the one that is bound there: a parent that is a text or a fraction equals no folder's number.
const QString kRowsOfAllFolders = u"SELECT * FROM bookmarks WHERE parent=+CAST(parent AS INTEGER) AND type=0"_s;

/// How SQLite would go through the table, in its own words.
QString planOf(DRDatabase& database, const QString& sql, const DRSqlValues& values = {})
{
    QString plan;
    DRResultSet step = database.executeQuery(u"EXPLAIN QUERY PLAN "_s + sql, values);
    while (step.next()) {
        plan += step.string("detail") + u'\n';
    }
    return plan;
}

} // namespace

/// When both statements walk the same way, each folder's statement would walk it all for a few rows, and one walk meets
/// the rows of each folder in the order in which its own would.
DRFolderBookmarkIds::DRFolderBookmarkIds(DRDatabase& database)
    : m_rowsOfFolder(database.prepare(kRowsOfFolder)),
      m_hasAll(planOf(database, kRowsOfFolder, {qint64{0}}) == planOf(database, kRowsOfAllFolders))
{
    if (m_hasAll) {
        readAllFolders(database);
    }
}

void DRFolderBookmarkIds::readAllFolders(DRDatabase& database)
{
    DRResultSet row = database.executeQuery(kRowsOfAllFolders);
    while (row.next()) {
        m_ids[row.integer("parent")].append(row.integer("id"));
    }
    m_isComplete = !row.hasFailed();
}

QList<qint64> DRFolderBookmarkIds::inFolder(qint64 folderId)
{
    if (m_hasAll || m_ids.contains(folderId)) {
        return m_ids.value(folderId);
    }
    QList<qint64> ids;
    DRResultSet row = m_rowsOfFolder.query({folderId});
    while (row.next()) {
        ids.append(row.integer("id"));
    }
    m_isComplete = m_isComplete && !row.hasFailed();
    m_ids.insert(folderId, ids);
    return ids;
}
