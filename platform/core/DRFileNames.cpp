#include "platform/core/DRFileNames.h"

#include "platform/core/DRUtf8.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

constexpr char16_t kFirstEscape = 0xDC80;
constexpr char16_t kLastEscape = 0xDCFF;
constexpr char16_t kEscapeBase = 0xDC00; ///< plus the byte

constexpr int kLongestCharacterBytes = 4;

/// The bytes of the valid character at the start; 0 when there is none.
qsizetype characterBytes(QByteArrayView bytes)
{
    for (qsizetype size = 1; size <= std::min<qsizetype>(kLongestCharacterBytes, bytes.size()); ++size) {
        QStringDecoder decoder(QStringDecoder::Utf8,
                               QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        [[maybe_unused]] const QString decoded = decoder(bytes.first(size));
        if (!decoder.hasError()) {
            return size;
        }
    }
    return 0;
}

} // namespace

QString DRFileNames::fromBytes(const QByteArray& name)
{
    QString text;
    QByteArrayView rest(name);
    while (!rest.isEmpty()) {
        const qsizetype size = characterBytes(rest);
        if (size == 0) {
            text += QChar(static_cast<char16_t>(kEscapeBase + static_cast<unsigned char>(rest.front())));
        } else {
            text += DRUtf8::decode(rest.first(size)); // which keeps U+FEFF
        }
        rest = rest.sliced(std::max<qsizetype>(size, 1));
    }
    return text;
}

QByteArray DRFileNames::toBytes(const QString& name)
{
    QByteArray bytes;
    qsizetype position = 0;
    while (position < name.size()) {
        const char16_t unit = name.at(position).unicode();
        const bool isEscape = unit >= kFirstEscape && unit <= kLastEscape;
        if (isEscape) {
            bytes.append(static_cast<char>(unit - kEscapeBase));
            ++position;
            continue;
        }
        const qsizetype size = name.at(position).isHighSurrogate() ? 2 : 1;
        bytes.append(QStringView(name).sliced(position, std::min(size, name.size() - position)).toUtf8());
        position += size;
    }
    return bytes;
}
