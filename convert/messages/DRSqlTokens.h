#pragma once

#include <QByteArray>

#include <initializer_list>
#include <span>
#include <vector>

/// One token of an SQL text, taken apart as SQLite does. Spaces and comments are none.
struct DRSqlToken {
    enum class Kind {
        Word,   ///< a keyword or a name, in lower case (ASCII only, as SQLite compares)
        Name,   ///< a name in "", `` or [], in lower case; without them unless it holds more than words do
        Number, ///< as it stands
        Text,   ///< a literal in single quotes, as it stands with them
        Symbol, ///< an operator or mark; also what SQLite would refuse
    };

    Kind kind = Kind::Symbol;
    QByteArray text;

    /// Whether this is that keyword or symbol.
    [[nodiscard]] bool is(QByteArrayView wordOrSymbol) const
    {
        return (kind == Kind::Word || kind == Kind::Symbol) && text == wordOrSymbol;
    }
    [[nodiscard]] bool isOneOf(std::initializer_list<QByteArrayView> wordsOrSymbols) const;
    [[nodiscard]] bool canBeName() const { return kind == Kind::Word || kind == Kind::Name; }
    [[nodiscard]] bool isLiteral() const { return kind == Kind::Number || kind == Kind::Text || is("null"); }
};

using DRSqlTokens = std::vector<DRSqlToken>;

/// The tokens of a text that SQLite has accepted. Never fails: see `Kind::Symbol`.
[[nodiscard]] DRSqlTokens sqlTokensOf(QByteArrayView sql);

/// Reads tokens one after the other. The tokens must outlive it.
class DRSqlTokenReader {
public:
    explicit DRSqlTokenReader(std::span<const DRSqlToken> tokens) : m_rest(tokens) {}

    [[nodiscard]] bool isAtEnd() const { return m_rest.empty(); }
    [[nodiscard]] std::span<const DRSqlToken> rest() const { return m_rest; }

    /// Passes that keyword or symbol. False, without moving, when something else stands there.
    bool skip(QByteArrayView wordOrSymbol);
    /// Passes all of them in this order. False, perhaps after moving, when one is missing.
    bool skipAll(std::initializer_list<QByteArrayView> wordsOrSymbols);
    /// Passes one token. The default, a symbol without text, at the end.
    DRSqlToken take();
    /// Passes a name and answers it; empty, without moving, when none stands there.
    QByteArray takeName();
    /// Passes a name with or without a schema before it and answers it without; empty when none stands there.
    QByteArray takeQualifiedName();
    /// Passes everything before the first of these that stands in no parentheses and behind no dot, or to the end.
    DRSqlTokens takeUntil(std::initializer_list<QByteArrayView> wordsOrSymbols);

private:
    std::span<const DRSqlToken> m_rest;
};
