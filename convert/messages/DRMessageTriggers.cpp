#include "convert/messages/DRMessageTriggers.h"

#include "convert/messages/DRTriggerExpression.h"
#include "convert/messages/DRTriggerTables.h"
#include "convert/messages/DRTriggerText.h"
#include "convert/messages/DRTriggerUpdate.h"
#include "platform/sqlite/DRDatabase.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Event = DRTriggerText::Event;
using Triggers = std::vector<DRTriggerText>;
using TableAndColumn = std::pair<QByteArray, QByteArray>;

/// The columns of a message that have one of few values in all rows of ours.
struct OwnRows {
    const char* table;
    std::array<const char*, 2> columns;
    std::array<std::array<qint64, 2>, 2> rows;
};

constexpr std::array<OwnRows, 2> kOwnMessages{{
    {.table = "sms", .columns = {"read", "type"}, .rows = {{{1, 0}, {1, 1}}}},
    {.table = "pdu", .columns = {"m_type", "msg_box"}, .rows = {{{128, 2}, {132, 1}}}},
}};

/// None when a trigger cannot be read.
std::optional<Triggers> readTriggers(DRDatabase& database)
{
    Triggers triggers;
    DRResultSet rows = database.executeQuery(u"SELECT sql FROM sqlite_master WHERE type = 'trigger'"_s);
    while (rows.next()) {
        auto trigger = DRTriggerText::parse(rows.string("sql").toUtf8());
        if (!trigger) {
            return std::nullopt;
        }
        triggers.push_back(std::move(*trigger));
    }
    return rows.hasFailed() ? std::nullopt : std::optional(std::move(triggers));
}

/// Whether the statements that the triggers belong to can be compiled: a trigger with a fault makes each insert fail.
bool canInsert(DRDatabase& database)
{
    constexpr std::array kInserts{"sms", "pdu", "part"};
    return std::ranges::all_of(kInserts, [&database](const char* table) {
        return database.executeQuery(u"EXPLAIN INSERT INTO %1 DEFAULT VALUES"_s.arg(QLatin1StringView(table))).next();
    });
}

/// Collects what the triggers assign, as long as all of it is only recomputed.
class Judge {
public:
    explicit Judge(DRDatabase& database)
        : m_database(database), m_tables(DRTriggerTables::read(database)), m_expression(m_tables)
    {
    }

    [[nodiscard]] bool accepts(const Triggers& triggers)
    {
        return std::ranges::all_of(triggers, [this](const auto& trigger) { return acceptsInsert(trigger); }) &&
               areApart() && std::ranges::none_of(triggers, [this](const auto& trigger) { return isSetOff(trigger); });
    }

private:
    [[nodiscard]] bool acceptsInsert(const DRTriggerText& trigger);
    [[nodiscard]] bool acceptsMessage(const DRTriggerText& trigger, const OwnRows& own);
    [[nodiscard]] bool acceptsPart(const DRTriggerText& trigger);
    [[nodiscard]] std::optional<bool> truth(const DRTriggerText& trigger, const OwnRows& own);
    [[nodiscard]] std::optional<bool>
    holds(const DRTriggerText& trigger, const OwnRows& own, const std::array<qint64, 2>& row);
    [[nodiscard]] bool assignsForMessage(const DRSqlTokens& statement);
    [[nodiscard]] bool assignsForPart(const DRSqlTokens& statement);
    [[nodiscard]] bool canAssign(const QByteArray& table, const QByteArray& column) const;
    [[nodiscard]] bool areApart() const;
    [[nodiscard]] bool isSetOff(const DRTriggerText& trigger) const;

    DRDatabase& m_database;
    DRTriggerTables m_tables;
    DRTriggerExpression m_expression;
    std::set<TableAndColumn> m_ofMessages;
    std::map<TableAndColumn, QByteArray> m_ofParts; ///< with the literal that is assigned
};

bool Judge::acceptsInsert(const DRTriggerText& trigger)
{
    if (trigger.event != Event::Insert) {
        return true;
    }
    if (trigger.table == "part") {
        return trigger.isAfter && acceptsPart(trigger);
    }
    const auto* const own =
        std::ranges::find_if(kOwnMessages, [&trigger](const OwnRows& rows) { return trigger.table == rows.table; });
    return own == kOwnMessages.end() || (trigger.isAfter && acceptsMessage(trigger, *own));
}

/// A trigger that never fires for rows of ours may do anything.
bool Judge::acceptsMessage(const DRTriggerText& trigger, const OwnRows& own)
{
    const auto fires = truth(trigger, own);
    if (!fires) {
        return false;
    }
    return !*fires || std::ranges::all_of(trigger.statements,
                                          [this](const auto& statement) { return assignsForMessage(statement); });
}

/// Its effect depends on the thread and on `ct` alone, and happens once.
bool Judge::acceptsPart(const DRTriggerText& trigger)
{
    return DRTriggerExpression::readsOnlyNew(trigger.when, {"ct"}) &&
           std::ranges::all_of(trigger.statements, [this](const auto& statement) { return assignsForPart(statement); });
}

/// Whether the trigger fires for rows of ours; none when for some only, or when that cannot be said.
std::optional<bool> Judge::truth(const DRTriggerText& trigger, const OwnRows& own)
{
    if (trigger.when.empty()) {
        return true;
    }
    const bool areIntegers =
        std::ranges::all_of(own.columns, [&](const char* column) { return m_tables.isInteger(trigger.table, column); });
    if (!areIntegers || !DRTriggerExpression::readsOnlyNew(trigger.when, {own.columns[0], own.columns[1]})) {
        return std::nullopt;
    }
    const auto first = holds(trigger, own, own.rows[0]);
    return first == holds(trigger, own, own.rows[1]) ? first : std::nullopt;
}

/// The condition is put into the query token by token, each of them checked; the row has the columns' affinity.
std::optional<bool> Judge::holds(const DRTriggerText& trigger, const OwnRows& own, const std::array<qint64, 2>& row)
{
    QByteArrayList condition;
    for (const DRSqlToken& token : trigger.when) {
        condition.append(token.text);
    }
    const QString query = u"SELECT CASE WHEN %3 THEN 1 ELSE 0 END AS truth "
                          "FROM (SELECT CAST(? AS INTEGER) AS %1, CAST(? AS INTEGER) AS %2) AS new"_s;
    DRResultSet rows =
        m_database.executeQuery(query.arg(QLatin1StringView(own.columns[0]), QLatin1StringView(own.columns[1]),
                                          QString::fromUtf8(condition.join(' '))),
                                {row[0], row[1]});
    return rows.next() ? std::optional(rows.integer("truth") != 0) : std::nullopt;
}

bool Judge::assignsForMessage(const DRSqlTokens& statement)
{
    const auto update = DRTriggerUpdate::parse(statement);
    return update && update->isOfNewThread() &&
           std::ranges::all_of(update->assignments, [&](const DRTriggerUpdate::Assignment& assignment) {
               m_ofMessages.emplace(update->table, assignment.column);
               return canAssign(update->table, assignment.column) && m_expression.isFunctionOfContent(assignment.value);
           });
}

/// Always the same literal for one column, so that the order does not matter.
bool Judge::assignsForPart(const DRSqlTokens& statement)
{
    const auto update = DRTriggerUpdate::parse(statement);
    return update && update->isOfThreadOfNewPart() && m_tables.isRowId("pdu", "_id") &&
           m_tables.isRowId("part", "_id") &&
           std::ranges::all_of(update->assignments, [&](const DRTriggerUpdate::Assignment& assignment) {
               if (assignment.value.size() != 1 || !assignment.value.front().isLiteral()) {
                   return false;
               }
               const QByteArray& literal = assignment.value.front().text;
               const auto known = m_ofParts.try_emplace({update->table, assignment.column}, literal).first;
               return canAssign(update->table, assignment.column) && known->second == literal;
           });
}

/// A column that the table does not have could be another name of its row ID.
bool Judge::canAssign(const QByteArray& table, const QByteArray& column) const
{
    return DRTriggerTables::isDerived(table) && m_tables.takesAnyValue(table) && m_tables.hasColumn(table, column) &&
           column != "_id" && !m_tables.isKey(table, column);
}

/// What both messages and parts assigned would depend on the order of their firing.
bool Judge::areApart() const
{
    return std::ranges::none_of(m_ofParts, [this](const auto& entry) { return m_ofMessages.contains(entry.first); });
}

/// Whether the updates make the trigger fire.
bool Judge::isSetOff(const DRTriggerText& trigger) const
{
    const auto touches = [&trigger](const TableAndColumn& assigned) {
        return trigger.event == Event::Update && trigger.table == assigned.first &&
               (trigger.columns.isEmpty() || trigger.columns.contains(assigned.second));
    };
    return std::ranges::any_of(m_ofMessages, touches) ||
           std::ranges::any_of(m_ofParts, [&touches](const auto& entry) { return touches(entry.first); });
}

} // namespace

bool DRMessageTriggers::onlyRecompute(DRDatabase& database)
{
    if (!database.setTriggers(DRDatabase::Triggers::On)) {
        return false;
    }
    const auto triggers = readTriggers(database);
    return triggers && Judge(database).accepts(*triggers) && canInsert(database);
}
