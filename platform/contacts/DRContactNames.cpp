#include "platform/contacts/DRContactNames.h"

#include <QChar>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isKana(char32_t character)
{
    const QChar::Script script = QChar::script(character);
    return script == QChar::Script_Hiragana || script == QChar::Script_Katakana;
}

bool isEastAsian(char32_t character)
{
    const QChar::Script script = QChar::script(character);
    return script == QChar::Script_Han || script == QChar::Script_Hangul || isKana(character);
}

QString textOf(const std::optional<GDataNameElement>& element)
{
    return element ? element->stringValue : QString();
}

QString joined(QStringList parts, const QString& separator)
{
    parts.removeAll(QString());
    return parts.join(separator);
}

} // namespace

QString DRContactNames::formatted(const GDataName& name)
{
    const QString given = textOf(name.givenName);
    const QString additional = textOf(name.additionalName);
    const QString family = textOf(name.familyName);
    const QList<uint> characters = (family + given).toUcs4();
    if (!std::ranges::any_of(characters, isEastAsian)) {
        return joined({name.namePrefix, given, additional, family, name.nameSuffix}, u" "_s);
    }
    const bool isJapanese = std::ranges::any_of(characters, isKana);
    const QString core = joined({family, additional, given}, isJapanese ? u" "_s : QString());
    return joined({name.namePrefix, core, name.nameSuffix}, u" "_s);
}
