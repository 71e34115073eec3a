#include "convert/messages/DRSqlTokens.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

using Kind = DRSqlToken::Kind;

constexpr QByteArrayView kSpaces = " \t\n\f\r";
constexpr QByteArrayView kNameQuotes = "\"`[";
constexpr std::array<QByteArrayView, 10> kLongSymbols{"->>", "->", "<>", "<=", ">=", "!=", "==", "||", "<<", ">>"};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isNamePart(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' || byte >= 0x80;
}

qsizetype endOr(qsizetype index, qsizetype markSize, QByteArrayView text)
{
    return index < 0 ? text.size() : index + markSize;
}

/// The length of the space or comment that the text begins with; 0 when it begins with a token.
qsizetype lengthOfGap(QByteArrayView text)
{
    if (text.startsWith("--")) {
        return endOr(text.indexOf('\n'), 1, text);
    }
    if (text.startsWith("/*")) {
        return endOr(text.indexOf("*/", 2), 2, text);
    }
    return kSpaces.contains(text.front()) ? 1 : 0;
}

char closingQuote(char opening)
{
    return opening == '[' ? ']' : opening;
}

/// With both quotes; none when the closing one is missing.
std::optional<qsizetype> lengthOfQuoted(QByteArrayView text)
{
    const char quote = closingQuote(text.front());
    qsizetype end = text.indexOf(quote, 1);
    while (quote != ']' && end >= 0 && end + 1 < text.size() && text.at(end + 1) == quote) {
        end = text.indexOf(quote, end + 2);
    }
    return end < 0 ? std::nullopt : std::optional(end + 1);
}

bool isExponentSign(QByteArrayView text, qsizetype i)
{
    return (text.at(i) == '+' || text.at(i) == '-') && i > 0 && (text.at(i - 1) | 0x20) == 'e' && i + 1 < text.size() &&
           isDigit(text.at(i + 1));
}

qsizetype lengthOfNumber(QByteArrayView text)
{
    qsizetype i = 0;
    while (i < text.size() && (isNamePart(text.at(i)) || text.at(i) == '.' || isExponentSign(text, i))) {
        ++i;
    }
    return i;
}

qsizetype lengthOfWord(QByteArrayView text)
{
    return std::ranges::find_if_not(text, isNamePart) - text.begin();
}

qsizetype lengthOfSymbol(QByteArrayView text)
{
    const auto* const found =
        std::ranges::find_if(kLongSymbols, [text](QByteArrayView symbol) { return text.startsWith(symbol); });
    return found == kLongSymbols.end() ? 1 : found->size();
}

bool isNumber(QByteArrayView text)
{
    return isDigit(text.front()) || (text.front() == '.' && text.size() > 1 && isDigit(text.at(1)));
}

/// The kind and length of the token that the text begins with. An unclosed quote takes all that follows it: looking for the
/// end of each of many would take the square of the text's length.
std::pair<Kind, qsizetype> nextToken(QByteArrayView text)
{
    const bool isText = text.front() == '\'';
    if (isText || kNameQuotes.contains(text.front())) {
        const auto length = lengthOfQuoted(text);
        const Kind kind = isText ? Kind::Text : Kind::Name;
        return length ? std::pair(kind, *length) : std::pair(Kind::Symbol, text.size());
    }
    if (isNumber(text)) {
        return {Kind::Number, lengthOfNumber(text)};
    }
    if (isNamePart(text.front())) {
        return {Kind::Word, lengthOfWord(text)};
    }
    return {Kind::Symbol, lengthOfSymbol(text)};
}

QByteArray meaning(Kind kind, QByteArrayView text)
{
    if (kind == Kind::Name) {
        const QByteArrayView inner = text.sliced(1, text.size() - 2);
        return (std::ranges::all_of(inner, isNamePart) ? inner : text).toByteArray().toLower();
    }
    return kind == Kind::Word ? text.toByteArray().toLower() : text.toByteArray();
}

} // namespace

bool DRSqlToken::isOneOf(std::initializer_list<QByteArrayView> wordsOrSymbols) const
{
    return std::ranges::any_of(wordsOrSymbols, [this](QByteArrayView candidate) { return is(candidate); });
}

DRSqlTokens sqlTokensOf(QByteArrayView sql)
{
    DRSqlTokens tokens;
    while (!sql.isEmpty()) {
        qsizetype length = lengthOfGap(sql);
        if (length == 0) {
            const auto token = nextToken(sql);
            length = token.second;
            tokens.push_back({.kind = token.first, .text = meaning(token.first, sql.first(length))});
        }
        sql = sql.sliced(length);
    }
    return tokens;
}

bool DRSqlTokenReader::skip(QByteArrayView wordOrSymbol)
{
    if (m_rest.empty() || !m_rest.front().is(wordOrSymbol)) {
        return false;
    }
    m_rest = m_rest.subspan(1);
    return true;
}

bool DRSqlTokenReader::skipAll(std::initializer_list<QByteArrayView> wordsOrSymbols)
{
    return std::ranges::all_of(wordsOrSymbols, [this](QByteArrayView token) { return skip(token); });
}

DRSqlToken DRSqlTokenReader::take()
{
    if (m_rest.empty()) {
        return {};
    }
    const DRSqlToken& token = m_rest.front();
    m_rest = m_rest.subspan(1);
    return token;
}

QByteArray DRSqlTokenReader::takeName()
{
    return !m_rest.empty() && m_rest.front().canBeName() ? take().text : QByteArray();
}

QByteArray DRSqlTokenReader::takeQualifiedName()
{
    const QByteArray name = takeName();
    return !name.isEmpty() && skip(".") ? takeName() : name;
}

DRSqlTokens DRSqlTokenReader::takeUntil(std::initializer_list<QByteArrayView> wordsOrSymbols)
{
    DRSqlTokens taken;
    int depth = 0;
    while (!m_rest.empty()) {
        const bool isPartOfName = !taken.empty() && taken.back().is(".");
        if (depth == 0 && !isPartOfName && m_rest.front().isOneOf(wordsOrSymbols)) {
            break;
        }
        depth += m_rest.front().is("(") ? 1 : 0;
        depth -= m_rest.front().is(")") ? 1 : 0;
        taken.push_back(take());
    }
    return taken;
}
