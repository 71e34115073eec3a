#include "platform/sqlite/DRSqlText.h"

#include <QRegularExpression>

#include <sqlite3.h>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

bool isNameStart(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit == u'_';
}

bool isNamePart(QChar character)
{
    return isNameStart(character) || (character.unicode() >= u'0' && character.unicode() <= u'9');
}

constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;

/// What SQLite's tokenizer passes over between tokens.
constexpr QStringView kSpaces = u" \t\n\f\r";

QStringView withoutSpaces(QStringView text)
{
    while (!text.isEmpty() && kSpaces.contains(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && kSpaces.contains(text.back())) {
        text.chop(1);
    }
    return text;
}

/// 64 bits as they stand, so that 0xFFFFFFFFFFFFFFFF is -1. None when there are more, and for -0x8000000000000000: SQLite refuses
/// both.
std::optional<DRSqlValue> hexadecimalInteger(QStringView digits, bool isNegative)
{
    bool fits = false;
    const auto value = static_cast<qint64>(digits.toULongLong(&fits, kHexadecimal));
    if (!fits || (isNegative && value == std::numeric_limits<qint64>::min())) {
        return std::nullopt;
    }
    return isNegative ? -value : value;
}

/// An integer beyond 64 bits becomes a real, a real too large for 64 bits infinite, as in SQLite. LIKE compares a real by its text
/// of 15 digits, so that the last bit does not matter.
DRSqlValue decimalNumber(const QString& digits, bool isNegative)
{
    const QString literal = isNegative ? u'-' + digits : digits;
    bool isInteger = false;
    const qint64 integer = literal.toLongLong(&isInteger, kDecimal);
    return isInteger ? DRSqlValue(integer) : DRSqlValue(literal.toDouble());
}

std::optional<DRSqlValue> number(QStringView text)
{
    static const QRegularExpression hexadecimal(u"\\A0[xX]([0-9A-Fa-f]+)\\z"_s);
    static const QRegularExpression decimal(u"\\A([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?\\z"_s);
    const bool isNegative = text.startsWith(u'-');
    const bool isSigned = isNegative || text.startsWith(u'+');
    const QString digits = (isSigned ? withoutSpaces(text.sliced(1)) : text).toString();
    if (const auto match = hexadecimal.match(digits); match.hasMatch()) {
        return hexadecimalInteger(match.capturedView(1), isNegative);
    }
    return decimal.match(digits).hasMatch() ? std::optional(decimalNumber(digits, isNegative)) : std::nullopt;
}

/// Never null; none when a quote has no partner.
std::optional<QString> withPairsCollapsed(QStringView text)
{
    QString result = u""_s;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isQuote = text.at(i) == u'\'';
        if (isQuote && (i + 1 == text.size() || text.at(i + 1) != u'\'')) {
            return std::nullopt; // a quote without a partner ends the literal early
        }
        result += text.at(i);
        i += isQuote ? 1 : 0;
    }
    return result;
}

} // namespace

std::optional<QString> DRSqlText::insideSingleQuotes(const QString& text)
{
    return text.isNull() ? u"(null)"_s : withPairsCollapsed(text);
}

std::optional<DRSqlValue> DRSqlText::unquotedOperand(const QString& text)
{
    constexpr qsizetype kBothQuotes = 2;
    const QStringView operand = withoutSpaces(text);
    if (operand.size() >= kBothQuotes && operand.startsWith(u'\'') && operand.endsWith(u'\'')) {
        return withPairsCollapsed(operand.sliced(1, operand.size() - kBothQuotes));
    }
    return number(operand);
}

std::optional<QString> DRSqlText::quotedName(const QString& name)
{
    if (name.isEmpty() || !isNameStart(name.front()) || !std::ranges::all_of(name, isNamePart)) {
        return std::nullopt;
    }
    return u'"' + name + u'"';
}

bool DRSqlText::isKeyword(const QByteArray& name)
{
    return sqlite3_keyword_check(name.constData(), static_cast<int>(name.size())) != 0;
}
