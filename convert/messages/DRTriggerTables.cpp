#include "convert/messages/DRTriggerTables.h"

#include "convert/messages/DRSqlTokens.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRSqlText.h"

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kDerivedTables{"threads", "vrnm_threads"};
constexpr std::array kTables{"threads", "vrnm_threads", "sms",          "pdu",
                             "part",    "addr",         "pending_msgs", "canonical_addresses"};

/// Whether a table's text has nothing that could refuse a value or compute one.
bool isPlainTable(const DRSqlTokens& tokens)
{
    return std::ranges::none_of(tokens, [](const DRSqlToken& token) {
        return token.isOneOf({"check", "unique", "not", "strict", "generated", "as", "references"});
    });
}

/// Whether an index's text names columns only: nothing that is computed, and so could fail.
bool isPlainIndex(const DRSqlTokens& tokens)
{
    DRSqlTokenReader reader(tokens);
    if (!reader.skipAll({"create", "index"})) {
        return false;
    }
    reader.takeUntil({"("});
    do {
        reader.take(); // "(" or ","
        if (reader.takeName().isEmpty() || (reader.skip("collate") && reader.takeName().isEmpty())) {
            return false;
        }
        static_cast<void>(reader.skip("asc") || reader.skip("desc"));
    } while (!reader.rest().empty() && reader.rest().front().is(","));
    return reader.skip(")") && reader.isAtEnd();
}

bool hasPlainIndexesOnly(DRDatabase& database, const QString& table)
{
    DRResultSet rows = database.executeQuery(
        u"SELECT sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL AND tbl_name = ? COLLATE NOCASE"_s,
        {table});
    while (rows.next()) {
        if (!isPlainIndex(sqlTokensOf(rows.string("sql").toUtf8()))) {
            return false;
        }
    }
    return !rows.hasFailed();
}

/// The tokens of the table's text; none for views, virtual tables and what is missing.
std::optional<DRSqlTokens> textOfTable(DRDatabase& database, const QString& table)
{
    DRResultSet rows = database.executeQuery(
        u"SELECT sql FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"_s, {table});
    if (!rows.next()) {
        return std::nullopt;
    }
    const DRSqlTokens tokens = sqlTokensOf(rows.string("sql").toUtf8());
    DRSqlTokenReader reader(tokens);
    return reader.skipAll({"create", "table"}) ? std::optional(tokens) : std::nullopt;
}

} // namespace

bool DRTriggerTables::readTable(DRDatabase& database, Table& table, const QByteArray& name)
{
    const QString nameText = QString::fromLatin1(name);
    const auto text = textOfTable(database, nameText);
    int keyColumns = 0;
    DRResultSet rows = database.executeQuery(u"SELECT name, type, pk FROM pragma_table_xinfo(?)"_s, {nameText});
    while (rows.next()) {
        const QByteArray column = rows.string("name").toUtf8().toLower();
        if (DRSqlText::isKeyword(column)) {
            return false; // in a condition it could be either
        }
        keyColumns += rows.integer("pk") != 0 ? 1 : 0;
        table.columns.insert(column, {.isInteger = rows.string("type").toUtf8().toLower() == "integer",
                                      .isKey = rows.integer("pk") != 0});
    }
    table.hasOneKeyColumn = keyColumns == 1;
    table.takesAnyValue = text && isPlainTable(*text) && hasPlainIndexesOnly(database, nameText);
    return text && !rows.hasFailed();
}

DRTriggerTables DRTriggerTables::read(DRDatabase& database)
{
    DRTriggerTables tables;
    for (const char* name : kTables) {
        Table table;
        if (readTable(database, table, name)) {
            tables.m_tables.insert(name, table);
        }
    }
    return tables;
}

bool DRTriggerTables::isDerived(const QByteArray& table)
{
    return std::ranges::find(kDerivedTables, table) != kDerivedTables.end();
}

bool DRTriggerTables::hasColumn(const QByteArray& table, const QByteArray& column) const
{
    return m_tables.value(table).columns.contains(column);
}

bool DRTriggerTables::isInteger(const QByteArray& table, const QByteArray& column) const
{
    return m_tables.value(table).columns.value(column).isInteger;
}

bool DRTriggerTables::isKey(const QByteArray& table, const QByteArray& column) const
{
    return m_tables.value(table).columns.value(column).isKey;
}

bool DRTriggerTables::isRowId(const QByteArray& table, const QByteArray& column) const
{
    return isKey(table, column) && isInteger(table, column) && m_tables.value(table).hasOneKeyColumn;
}

bool DRTriggerTables::takesAnyValue(const QByteArray& table) const
{
    return m_tables.value(table).takesAnyValue;
}
