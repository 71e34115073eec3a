#include "platform/contacts/DRVCardText.h"

#include "platform/core/DRUtf8.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBytesOfLine = 75;

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7f && unit <= 0x9f);
}

bool isOfToken(QChar character)
{
    return character.isLetterOrNumber() || character == u'-';
}

bool isInsideCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
}

bool startsWith(QByteArrayView bytes, QByteArrayView word)
{
    return bytes.size() >= word.size() && bytes.first(word.size()).compare(word, Qt::CaseInsensitive) == 0;
}

bool endsWith(QByteArrayView bytes, QByteArrayView word)
{
    return bytes.size() >= word.size() && bytes.last(word.size()).compare(word, Qt::CaseInsensitive) == 0;
}

/// How many bytes of the line to write so that its first marker is cut within the word VCARD; all when it has none.
qsizetype lengthBeforeMarkerEnds(QByteArrayView line)
{
    constexpr qsizetype kKeptOfWord = 2;
    for (qsizetype colon = line.indexOf(':'); colon >= 0; colon = line.indexOf(':', colon + 1)) {
        const QByteArrayView before = line.first(colon);
        if (startsWith(line.sliced(colon + 1), "VCARD") && (endsWith(before, "BEGIN") || endsWith(before, "END"))) {
            return colon + 1 + kKeptOfWord;
        }
    }
    return line.size();
}

/// How many bytes of the text the next line takes, at most `room`.
qsizetype lengthOfNextLine(QByteArrayView text, qsizetype room)
{
    qsizetype length = std::min(text.size(), room);
    while (length < text.size() && isInsideCharacter(text.at(length))) {
        --length;
    }
    return lengthBeforeMarkerEnds(text.first(length));
}

} // namespace

QString DRVCardText::escaped(const QString& text)
{
    constexpr qsizetype kUsualGrowth = 16;
    QString result;
    result.reserve(text.size() + kUsualGrowth);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        const bool endsPair = unit == u'\n' && i > 0 && text.at(i - 1) == u'\r';
        if (unit == u'\r' || (unit == u'\n' && !endsPair)) {
            result += R"(\n)"_L1;
            continue;
        }
        if (unit == u'\\' || unit == u';' || unit == u',') {
            result += u'\\';
        }
        if (!isControl(unit) || unit == u'\t') {
            result += QChar(unit);
        }
    }
    return result;
}

QByteArray DRVCardText::property(const QString& nameAndParameters, const QString& value)
{
    return folded(DRUtf8::encode(nameAndParameters + u':' + value));
}

QByteArray DRVCardText::folded(QByteArrayView line)
{
    constexpr qsizetype kBytesOfFold = 3;
    QByteArray result;
    result.reserve(line.size() + (line.size() / (kBytesOfLine - 4) + 1) * kBytesOfFold);
    qsizetype room = kBytesOfLine;
    while (true) {
        const qsizetype length = lengthOfNextLine(line, room);
        result.append(line.first(length)).append("\r\n");
        line = line.sliced(length);
        if (line.isEmpty()) {
            return result;
        }
        result.append(' ');
        room = kBytesOfLine - 1;
    }
}

QString DRVCardText::typeParameter(const QString& value)
{
    QString text = value;
    for (QChar& character : text) {
        if (character == u'"') {
            character = u'\'';
        }
        if (isControl(character.unicode())) {
            character = u' ';
        }
    }
    const bool isToken = std::ranges::all_of(text, isOfToken);
    return isToken ? ";TYPE="_L1 + text : R"(;TYPE=")"_L1 + text + u'"';
}
