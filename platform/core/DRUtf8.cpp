#include "platform/core/DRUtf8.h"

namespace {

constexpr char16_t kByteOrderMark = u'\uFEFF';
constexpr char16_t kReplacement = u'\uFFFD';

/// QString::fromUtf8 takes a leading U+FEFF for a mark of the encoding and drops it.
QString decodeKeepingMark(QByteArrayView bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (bytes.startsWith(QByteArrayView("\xEF\xBB\xBF"))) {
        text.prepend(QChar(kByteOrderMark));
    }
    return text;
}

QString withoutLoneSurrogates(const QString& text)
{
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const bool isPair =
            result.at(i).isHighSurrogate() && i + 1 < result.size() && result.at(i + 1).isLowSurrogate();
        if (isPair) {
            ++i;
            continue;
        }
        if (result.at(i).isSurrogate()) {
            result[i] = QChar(kReplacement);
        }
    }
    return result;
}

} // namespace

QString DRUtf8::decode(QByteArrayView bytes)
{
    QString text = decodeKeepingMark(bytes);
    if (text.contains(QChar(u'\0'))) {
        text.remove(QChar(u'\0'));
    }
    return text.isNull() ? QString(QLatin1StringView("")) : text;
}

std::optional<QString> DRUtf8::decodeStrictly(QByteArrayView bytes)
{
    if (!bytes.isValidUtf8()) {
        return std::nullopt;
    }
    return decodeKeepingMark(bytes);
}

QByteArray DRUtf8::encode(const QString& text)
{
    QByteArray bytes = text.isValidUtf16() ? text.toUtf8() : withoutLoneSurrogates(text).toUtf8();
    if (bytes.contains('\0')) {
        bytes.replace(QByteArrayView("\0", 1), QByteArrayView());
    }
    return bytes.isNull() ? QByteArray("") : bytes;
}
