#include "convert/media/DRAlbumJoin.h"

#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kAssets = u"ASSETS"_s;
const QString kAlbums = u"ALBUMS"_s;
const QString kOrderPrefix = u"FOK_"_s; ///< marks the column that keeps the order of another one

/// Whether the first occurrence of the word is the end of the name.
bool endsWithFirst(const QString& name, const QString& word)
{
    const qsizetype position = name.indexOf(word);
    return position >= 0 && position + word.size() == name.size();
}

QStringList namesOf(DRDatabase& database, const QString& query)
{
    QStringList names;
    DRResultSet row = database.executeQuery(query);
    while (row.next()) {
        names.append(row.string("name"));
    }
    return names;
}

template <typename Names, typename Predicate> QString firstOf(const Names& names, Predicate isMeant)
{
    const auto found = std::ranges::find_if(names, isMeant);
    return found == names.end() ? QString() : *found;
}

QStringList columnsOf(DRDatabase& database, const QString& table)
{
    const auto name = DRSqlText::quotedName(table); // a name from the database
    return name ? namesOf(database, u"PRAGMA table_info(%1)"_s.arg(*name)) : QStringList();
}

} // namespace

DRAlbumJoin DRAlbumJoin::ofNewerLayout(DRDatabase& database)
{
    const QStringList tables = namesOf(database, u"SELECT name FROM sqlite_master WHERE type='table'"_s);
    const QString table =
        firstOf(tables, [](const QString& name) { return name.startsWith(u"Z_"_s) && endsWithFirst(name, kAssets); });
    QStringList columns = columnsOf(database, table);
    const QString assetColumn = firstOf(
        columns, [](const QString& name) { return endsWithFirst(name, kAssets) && !name.contains(kOrderPrefix); });
    std::ranges::reverse(columns);
    const QString albumColumn = firstOf(columns, [](const QString& name) { return endsWithFirst(name, kAlbums); });
    return {database, table, assetColumn, albumColumn};
}

DRAlbumJoin DRAlbumJoin::ofOlderLayout(DRDatabase& database)
{
    return {database, u"PhotoAlbumToPhotoJoin"_s, u"right"_s, u"left"_s};
}

/// Columns are named together with their table: a lone name in double quotes that is no column would be taken for a text.
DRAlbumJoin::DRAlbumJoin(DRDatabase& database,
                         const QString& table,
                         const QString& assetColumn,
                         const QString& albumColumn)
    : m_database(&database)
{
    if (table.isEmpty()) {
        return;
    }
    const auto name = DRSqlText::quotedName(table);
    const auto asset = DRSqlText::quotedName(assetColumn);
    const auto album = DRSqlText::quotedName(albumColumn);
    m_isComplete = name && asset && album;
    if (m_isComplete) {
        m_table = *name;
        m_assetColumn = m_table + u'.' + *asset;
        m_albumColumn = m_table + u'.' + *album;
    }
}

QList<qint64> DRAlbumJoin::assetIdsOfAlbum(qint64 albumKey)
{
    if (m_table.isNull()) {
        return {};
    }
    if (!m_isSearchedByIndex) {
        m_isSearchedByIndex = isSearchedByIndex();
        m_assetIds = *m_isSearchedByIndex ? AssetIds() : readAll();
    }
    if (*m_isSearchedByIndex && !m_assetIds.contains(albumKey)) {
        m_assetIds.insert(albumKey, readAlbum(albumKey));
    }
    return m_assetIds.value(albumKey);
}

/// The key is written in decimal, not bound, so that SQLite plans each statement as it stands.
QString DRAlbumJoin::statementForAlbum(qint64 albumKey) const
{
    return u"SELECT %1 AS asset FROM %2 WHERE %3=%4"_s.arg(m_assetColumn, m_table, m_albumColumn).arg(albumKey);
}

/// Whether SQLite finds the rows of one album without looking at those of the others.
bool DRAlbumJoin::isSearchedByIndex()
{
    DRResultSet step = m_database->executeQuery(u"EXPLAIN QUERY PLAN "_s + statementForAlbum(0));
    return step.next() && step.string("detail").startsWith(u"SEARCH"_s);
}

QList<qint64> DRAlbumJoin::readAlbum(qint64 albumKey)
{
    QList<qint64> assetIds;
    DRResultSet row = m_database->executeQuery(statementForAlbum(albumKey));
    while (row.next()) {
        assetIds.append(row.integerAt(0));
    }
    m_isComplete = m_isComplete && !row.hasFailed();
    return assetIds;
}

/// Without an index each album's statement would walk through the whole table, in the order of this walk. A row belongs
/// to the integer that its album column equals by SQLite's rules, if any: the plus sign makes the cast value as plain as
/// a number that stands in a statement.
DRAlbumJoin::AssetIds DRAlbumJoin::readAll()
{
    AssetIds assetIds;
    DRResultSet row = m_database->executeQuery(
        u"SELECT CAST(%1 AS INTEGER) AS album, %2 AS asset FROM %3 WHERE %1 = +CAST(%1 AS INTEGER)"_s.arg(
            m_albumColumn, m_assetColumn, m_table));
    while (row.next()) {
        assetIds[row.integerAt(0)].append(row.integerAt(1));
    }
    m_isComplete = m_isComplete && !row.hasFailed();
    return assetIds;
}
