#include "convert/notes/DRNoteText.h"

#include <QChar>
#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// An entity of the notes app and its replacement.
struct Entity {
    QStringView name;
    QStringView text;
};

/// Replaced first, without regard to case, one after the other.
constexpr std::array kNoteEntities{Entity{u"&nbsp;", u" "}};

/// What may stand between "&" and ";" in XML, besides character references.
constexpr std::array kXmlEntities{Entity{u"lt", u"<"}, Entity{u"gt", u">"}, Entity{u"amp", u"&"},
                                  Entity{u"quot", u"\""}, Entity{u"apos", u"'"}};

/// "&#x10FFFF;" with room for leading zeros. Longer runs are no references, so that a text full of "&" is read in
/// linear time.
constexpr qsizetype kLongestReference = 32;

/// The text with its tags taken out.
QString withoutTags(QStringView html)
{
    QString text;
    text.reserve(html.size());
    bool isAfterBreak = true;
    qsizetype position = 0;
    while (position < html.size()) {
        const QChar unit = html.at(position);
        if (unit != u'<') {
            text.append(unit);
            isAfterBreak = unit == u'\n';
            ++position;
            continue;
        }
        const qsizetype close = html.indexOf(u'>', position);
        if (close < 0) {
            break;
        }
        const QStringView tag = html.sliced(position + 1, close - position - 1);
        const bool isBreak = tag.compare(u"br", Qt::CaseInsensitive) == 0;
        const bool isDivision = tag.compare(u"div", Qt::CaseInsensitive) == 0;
        if (isBreak || (isDivision && !isAfterBreak)) {
            text.append(u'\n');
            isAfterBreak = true;
        }
        position = close + 1;
    }
    return text;
}

/// The character that "#233" or "#xE9" stands for; none when it is no number or no character that text may hold.
std::optional<char32_t> referencedCharacter(QStringView name)
{
    if (!name.startsWith(u'#')) {
        return std::nullopt;
    }
    const bool isHexadecimal = name.startsWith(u"#x");
    const QStringView digits = name.sliced(isHexadecimal ? 2 : 1);
    const QStringView alphabet = isHexadecimal ? QStringView(u"0123456789abcdefABCDEF") : QStringView(u"0123456789");
    bool isNumber = std::ranges::all_of(digits, [alphabet](QChar digit) { return alphabet.contains(digit); });
    const uint value = isNumber ? digits.toUInt(&isNumber, isHexadecimal ? 16 : 10) : 0;
    const bool isCharacter = isNumber && value != 0 && value <= QChar::LastValidCodePoint && !QChar::isSurrogate(value);
    return isCharacter ? std::optional(char32_t{value}) : std::nullopt;
}

/// The text of the entity that begins with the "&" at the start of `text`, and how long it is there; none when it
/// begins none.
struct Unescaped {
    QString text;
    qsizetype length;
};
std::optional<Unescaped> entityAtStart(QStringView text)
{
    const qsizetype semicolon = text.left(kLongestReference).indexOf(u';');
    if (semicolon < 0) {
        return std::nullopt;
    }
    const QStringView name = text.sliced(1, semicolon - 1);
    for (const Entity& entity : kXmlEntities) {
        if (name == entity.name) {
            return Unescaped{entity.text.toString(), semicolon + 1};
        }
    }
    if (const auto character = referencedCharacter(name)) {
        return Unescaped{QString::fromUcs4(&*character, 1), semicolon + 1};
    }
    return std::nullopt;
}

/// The text with XML entities and character references replaced, in one pass: what a replacement forms is not read
/// again.
QString withXmlEntitiesUnescaped(QStringView text)
{
    QString result;
    result.reserve(text.size());
    qsizetype position = 0;
    while (position < text.size()) {
        const auto entity = text.at(position) == u'&' ? entityAtStart(text.sliced(position)) : std::nullopt;
        if (entity) {
            result.append(entity->text);
            position += entity->length;
        } else {
            result.append(text.at(position));
            ++position;
        }
    }
    return result;
}

} // namespace

QString convertNoteHTMLToText(const QString& html)
{
    QString text = withoutTags(html);
    for (const Entity& entity : kNoteEntities) {
        text.replace(entity.name.toString(), entity.text.toString(), Qt::CaseInsensitive);
    }
    text = withXmlEntitiesUnescaped(text);
    return text.isNull() ? u""_s : text;
}
