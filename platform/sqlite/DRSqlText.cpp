#include "platform/sqlite/DRSqlText.h"

#include <algorithm>

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

} // namespace

std::optional<QString> DRSqlText::insideSingleQuotes(const QString& text)
{
    if (text.isNull()) {
        return u"(null)"_s;
    }
    QString result;
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

std::optional<QString> DRSqlText::quotedName(const QString& name)
{
    if (name.isEmpty() || !isNameStart(name.front()) || !std::ranges::all_of(name, isNamePart)) {
        return std::nullopt;
    }
    return u'"' + name + u'"';
}
