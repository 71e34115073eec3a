#include "convert/messages/DRTriggerExpression.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

using Tokens = DRTriggerExpression::Tokens;

constexpr std::array<QByteArrayView, 19> kSymbols{"+",  "-", "*",  "/", "%", "=", "==", "!=", "<>", "<",
                                                  "<=", ">", ">=", "(", ")", ",", "&",  "|",  "~"};

constexpr std::array<QByteArrayView, 17> kWords{"case",    "when", "then",   "else",     "end",    "and",
                                                "or",      "not",  "is",     "null",     "isnull", "notnull",
                                                "between", "in",   "exists", "distinct", "like"};

/// Behind SELECT. A NATURAL join or one with USING, which read columns without naming them, are not among them.
constexpr std::array<QByteArrayView, 9> kWordsOfSelect{"select", "from", "left", "outer", "inner",
                                                       "cross",  "join", "on",   "where"};

/// What may follow a table in FROM: no alias, no comma.
constexpr std::array<QByteArrayView, 6> kWordsBehindTable{"left", "inner", "cross", "join", "on", "where"};

/// Their value does not depend on the order in which rows are found, which an index changes.
constexpr std::array<QByteArrayView, 3> kAggregates{"count", "max", "min"};

/// None of these fails, whatever it is given, and all but those of time answer the same each time.
constexpr std::array<QByteArrayView, 25> kFunctions{
    "count",  "max",      "min",   "avg",   "total",    "ifnull",    "coalesce", "nullif", "iif",
    "length", "substr",   "lower", "upper", "trim",     "ltrim",     "rtrim",    "round",  "instr",
    "typeof", "strftime", "date",  "time",  "datetime", "julianday", "unixepoch"};

template <size_t kSize> bool contains(const std::array<QByteArrayView, kSize>& list, QByteArrayView text)
{
    return std::ranges::find(list, text) != list.end();
}

bool isOperator(const DRSqlToken& token)
{
    return (token.kind == DRSqlToken::Kind::Symbol && contains(kSymbols, token.text)) ||
           (token.kind == DRSqlToken::Kind::Word && contains(kWords, token.text));
}

bool isAt(Tokens tokens, size_t index, QByteArrayView wordOrSymbol)
{
    return index < tokens.size() && tokens[index].is(wordOrSymbol);
}

/// A column with its table before it, as three tokens.
bool isQualified(Tokens tokens)
{
    return tokens.size() >= 3 && tokens[0].canBeName() && tokens[1].is(".") && tokens[2].canBeName();
}

/// Whether the first token is a literal or an operator in a use that is understood: LIKE fails on very long patterns, so that it
/// takes literals only; IN could stand before the name of a table.
bool isLiteralOrOperator(Tokens tokens)
{
    const DRSqlToken& first = tokens.front();
    if (first.is("like")) {
        return tokens.size() > 1 && tokens[1].kind == DRSqlToken::Kind::Text;
    }
    return first.is("in") ? isAt(tokens, 1, "(") : first.isLiteral() || isOperator(first);
}

/// Up to and with the parenthesis that closes the first token; 0 when none does.
size_t lengthOfParentheses(Tokens tokens)
{
    int depth = 0;
    for (size_t i = 0; i < tokens.size(); ++i) {
        depth += tokens[i].is("(") ? 1 : 0;
        depth -= tokens[i].is(")") ? 1 : 0;
        if (depth == 0) {
            return i + 1;
        }
    }
    return 0;
}

/// Whether what a select answers is one aggregate, perhaps compared or computed with literals: one row, whatever the
/// order of those that it is made of.
bool answersOneAggregate(Tokens select)
{
    if (select.size() < 2 || !contains(kAggregates, select[0].text) || !select[1].is("(")) {
        return false;
    }
    Tokens rest = select.subspan(1);
    rest = rest.subspan(lengthOfParentheses(rest));
    while (!rest.empty() && !rest.front().is("from")) {
        if (!isLiteralOrOperator(rest)) {
            return false;
        }
        rest = rest.subspan(1);
    }
    return !rest.empty();
}

/// The tables of a select's own FROM.
QList<QByteArray> tablesOf(Tokens select)
{
    QList<QByteArray> tables;
    DRSqlTokenReader reader(select);
    while (!reader.isAtEnd()) {
        reader.takeUntil({"from", "join"});
        reader.take();
        if (!reader.isAtEnd()) {
            tables.append(reader.takeQualifiedName());
        }
    }
    return tables;
}

} // namespace

bool DRTriggerExpression::readsOnlyNew(Tokens tokens, const QList<QByteArray>& columns)
{
    while (!tokens.empty()) {
        const bool isNew = isQualified(tokens) && tokens[0].text == "new" && columns.contains(tokens[2].text);
        if (!isNew && !isLiteralOrOperator(tokens)) {
            return false;
        }
        tokens = tokens.subspan(isNew ? 3 : 1);
    }
    return true;
}

/// `from` holds the tables of the innermost select around the tokens.
bool DRTriggerExpression::accepts(Tokens tokens, const Tables& from) const
{
    while (!tokens.empty()) {
        const size_t length = lengthOfAccepted(tokens, from);
        if (length == 0) {
            return false;
        }
        tokens = tokens.subspan(length);
    }
    return true;
}

/// How many of the first tokens are one thing that may be read; 0 when they may not or are not understood.
size_t DRTriggerExpression::lengthOfAccepted(Tokens tokens, const Tables& from) const
{
    const DRSqlToken& first = tokens.front();
    if (first.is("(") && isAt(tokens, 1, "select")) {
        return lengthOfSubselect(tokens, Subselect::Value);
    }
    if (first.isOneOf({"in", "exists"}) && isAt(tokens, 1, "(") && isAt(tokens, 2, "select")) {
        const size_t length = lengthOfSubselect(tokens.subspan(1), Subselect::Set);
        return length == 0 ? 0 : length + 1;
    }
    if (first.isOneOf({"from", "join"})) {
        return lengthOfTable(tokens, from);
    }
    if (first.is(",") && isAt(tokens, 1, "*")) {
        return 0; // all columns of a table
    }
    const bool isWordOfSelect = first.kind == DRSqlToken::Kind::Word && contains(kWordsOfSelect, first.text);
    if (isLiteralOrOperator(tokens) || (isWordOfSelect && !from.isEmpty())) {
        return 1;
    }
    return first.canBeName() && !isOperator(first) ? lengthOfName(tokens, from) : 0;
}

/// FROM or JOIN with its table. Outside a select it is UPDATE's own FROM.
size_t DRTriggerExpression::lengthOfTable(Tokens tokens, const Tables& from) const
{
    const size_t length = isQualified(tokens.subspan(1)) ? 4 : 2;
    const bool isEnd = tokens.size() == length;
    const bool isKnown = tokens.size() >= length && m_tables.hasTable(tokens[length - 1].text);
    const bool isAlone = isEnd || (tokens.size() > length && tokens[length].kind != DRSqlToken::Kind::Name &&
                                   contains(kWordsBehindTable, tokens[length].text));
    return !from.isEmpty() && isKnown && isAlone ? length : 0;
}

size_t DRTriggerExpression::lengthOfName(Tokens tokens, const Tables& from) const
{
    const QByteArray& name = tokens.front().text;
    if (isAt(tokens, 1, "(")) {
        return contains(kFunctions, name) ? 1 : 0;
    }
    if (!isQualified(tokens)) {
        return mayReadUnqualified(name, from) ? 1 : 0;
    }
    if (name == "main" && isQualified(tokens.subspan(2))) {
        return mayRead(tokens[2].text, tokens[4].text) ? 5 : 0;
    }
    return name == "new" || mayRead(name, tokens[2].text) ? 3 : 0;
}

size_t DRTriggerExpression::lengthOfSubselect(Tokens tokens, Subselect use) const
{
    const size_t length = lengthOfParentheses(tokens);
    if (length == 0) {
        return 0;
    }
    const Tokens select = tokens.subspan(2, length - 3); // without the parentheses and SELECT
    const Tables from = tablesOf(select);
    const bool hasNoOrder = use == Subselect::Set ? !isAt(select, 0, "*") : answersOneAggregate(select);
    return hasNoOrder && !from.isEmpty() && accepts(select, from) ? length : 0;
}

bool DRTriggerExpression::mayRead(const QByteArray& table, const QByteArray& column) const
{
    return column == "_id" || (m_tables.hasTable(table) && !DRTriggerTables::isDerived(table));
}

/// A column belongs to the innermost select whose tables have it, else to the updated table.
bool DRTriggerExpression::mayReadUnqualified(const QByteArray& column, const Tables& from) const
{
    Tables owners;
    std::ranges::copy_if(from, std::back_inserter(owners),
                         [&](const QByteArray& table) { return m_tables.hasColumn(table, column); });
    return column == "_id" || (!owners.isEmpty() && std::ranges::none_of(owners, &DRTriggerTables::isDerived));
}
