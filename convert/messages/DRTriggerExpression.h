#pragma once

#include "convert/messages/DRSqlTokens.h"
#include "convert/messages/DRTriggerTables.h"

#include <QByteArray>
#include <QList>

#include <span>

/// What the expressions of a trigger read. Their syntax is taken to be right, since SQLite has accepted it.
class DRTriggerExpression {
public:
    using Tokens = std::span<const DRSqlToken>;

    explicit DRTriggerExpression(const DRTriggerTables& tables) : m_tables(tables) {}

    /// Whether the value that an UPDATE sets depends only on the new row, on the content of tables that the triggers do
    /// not update, on the IDs of the others, and on the clock, and computing it cannot fail. False when in doubt.
    [[nodiscard]] bool isFunctionOfContent(Tokens tokens) const { return !tokens.empty() && accepts(tokens, {}); }

    /// Whether a condition reads nothing but literals and these columns of the new row, and cannot fail.
    [[nodiscard]] static bool readsOnlyNew(Tokens tokens, const QList<QByteArray>& columns);

private:
    using Tables = QList<QByteArray>;

    /// What a subselect is used for: its one value, or all its rows as a set.
    enum class Subselect { Value, Set };

    [[nodiscard]] bool accepts(Tokens tokens, const Tables& from) const;
    [[nodiscard]] size_t lengthOfAccepted(Tokens tokens, const Tables& from) const;
    [[nodiscard]] size_t lengthOfTable(Tokens tokens, const Tables& from) const;
    [[nodiscard]] size_t lengthOfName(Tokens tokens, const Tables& from) const;
    [[nodiscard]] size_t lengthOfSubselect(Tokens tokens, Subselect use) const;
    [[nodiscard]] bool mayRead(const QByteArray& table, const QByteArray& column) const;
    [[nodiscard]] bool mayReadUnqualified(const QByteArray& column, const Tables& from) const;

    const DRTriggerTables& m_tables;
};
