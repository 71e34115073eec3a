#include "convert/messages/DRTriggerUpdate.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <span>

namespace {

constexpr std::array<QByteArrayView, 4> kWheresOfNewThread{"_id = new . thread_id", "_id == new . thread_id",
                                                           "new . thread_id = _id", "new . thread_id == _id"};

/// The tables and conditions, sorted, of a subselect that finds the thread by the new part.
constexpr std::array<QByteArrayView, 2> kWaysToThreadOfNewPart{"new.mid = pdu._id | pdu",
                                                               "new._id = part._id | part | part.mid = pdu._id | pdu"};

QByteArray joined(std::span<const DRSqlToken> tokens, const char* separator)
{
    QByteArrayList texts;
    for (const DRSqlToken& token : tokens) {
        texts.append(token.text);
    }
    return texts.join(separator);
}

/// Passes the row ID of the updated table, with or without the table's name.
bool skipOwnId(DRSqlTokenReader& reader, const QByteArray& table)
{
    const QByteArray name = reader.takeName();
    return name == "_id" || (name == table && reader.skip(".") && reader.takeName() == "_id");
}

/// A column as table and name. `thread_id` and `_id` without a table are those of `pdu`: where `part` is joined, too,
/// SQLite refuses them as ambiguous or knows no other.
QByteArray fullName(std::span<const DRSqlToken> tokens)
{
    constexpr std::size_t kColumn = 1;
    constexpr std::size_t kTableDotColumn = 3;
    if (tokens.size() != kColumn && tokens.size() != kTableDotColumn) {
        return {};
    }
    const QByteArray name = joined(tokens, "");
    const QByteArray table = name == "mid" ? "part." : "pdu.";
    return name.contains('.') ? name : table + name;
}

/// A table as it stands; an equality with its sides sorted.
QByteArray canonical(const DRSqlTokens& clause)
{
    const auto equals = std::ranges::find_if(clause, [](const auto& token) { return token.isOneOf({"=", "=="}); });
    if (equals == clause.end()) {
        return joined(clause, " ");
    }
    QByteArrayList sides{fullName({clause.begin(), equals}), fullName({equals + 1, clause.end()})};
    std::ranges::sort(sides);
    return sides.join(" = ");
}

/// FROM and what follows, taken apart.
QByteArray canonicalWay(DRSqlTokenReader& reader)
{
    QByteArrayList clauses;
    while (!reader.isAtEnd()) {
        reader.take(); // the word or comma before the clause
        const DRSqlTokens clause = reader.takeUntil({"from", ",", "inner", "join", "on", "where", "and", "limit"});
        const bool isLimit =
            clause.size() == 1 && clause.front().kind == DRSqlToken::Kind::Number && clause.front().text == "1";
        if (!clause.empty() && !isLimit) {
            clauses.append(canonical(clause));
        }
    }
    std::ranges::sort(clauses);
    return clauses.join(" | ");
}

} // namespace

std::optional<DRTriggerUpdate> DRTriggerUpdate::parse(const DRSqlTokens& statement)
{
    DRSqlTokenReader reader(statement);
    DRTriggerUpdate update;
    if (!reader.skip("update")) {
        return std::nullopt;
    }
    update.table = reader.takeName();
    if (update.table.isEmpty() || !reader.skip("set")) {
        return std::nullopt;
    }
    do {
        const QByteArray column = reader.takeName();
        if (column.isEmpty() || !reader.skip("=")) {
            return std::nullopt;
        }
        update.assignments.push_back({.column = column, .value = reader.takeUntil({",", "where"})});
    } while (reader.skip(","));
    if (!reader.skip("where")) {
        return std::nullopt;
    }
    update.where.assign(reader.rest().begin(), reader.rest().end());
    return update;
}

bool DRTriggerUpdate::isOfNewThread() const
{
    QByteArray text = joined(where, " ");
    text.replace(table + " . _id", "_id");
    return std::ranges::find(kWheresOfNewThread, text) != kWheresOfNewThread.end();
}

bool DRTriggerUpdate::isOfThreadOfNewPart() const
{
    DRSqlTokenReader reader(where);
    if (!skipOwnId(reader, table) || !(reader.skip("in") || reader.skip("=") || reader.skip("==")) ||
        !reader.skipAll({"(", "select"}) || where.back().text != ")") {
        return false;
    }
    reader.skip("distinct");
    const QByteArray result = fullName(reader.takeUntil({"from"}));
    if (reader.isAtEnd()) {
        return false; // a select without a table
    }
    const DRSqlTokens tail(reader.rest().begin(), reader.rest().end() - 1);
    DRSqlTokenReader tailReader(tail);
    return result == "pdu.thread_id" &&
           std::ranges::find(kWaysToThreadOfNewPart, canonicalWay(tailReader)) != kWaysToThreadOfNewPart.end();
}
