#include "app/sample/DRSampleBoxes.h"

#include <QtEndian>

namespace {

constexpr qint64 kSecondsFrom1904To1970 = 2'082'844'800;
constexpr quint32 kInThisFile = 1;   // flag of a data reference
constexpr quint16 kEnglish = 0x15C7; // "eng" in five bits a letter
constexpr quint32 kNextTrack = 2;

template <typename Integer> QByteArray bigEndian(Integer value)
{
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

QByteArray DRSampleBoxes::u16(int value)
{
    return bigEndian(static_cast<quint16>(value));
}

QByteArray DRSampleBoxes::u32(quint32 value)
{
    return bigEndian(value);
}

QByteArray DRSampleBoxes::fixed(int value)
{
    return u32(static_cast<quint32>(value) << 16U);
}

QByteArray DRSampleBoxes::zeros(qsizetype count)
{
    return {count, '\0'};
}

QByteArray DRSampleBoxes::pascalText(const QByteArray& text, qsizetype width)
{
    return static_cast<char>(text.size()) + text + zeros(width - 1 - text.size());
}

QByteArray DRSampleBoxes::identityMatrix()
{
    const QByteArray one = fixed(1);
    return one + zeros(12) + one + zeros(12) + u32(1U << 30U);
}

QByteArray DRSampleBoxes::dates(const QDateTime& created)
{
    const auto seconds = static_cast<quint32>(created.toSecsSinceEpoch() + kSecondsFrom1904To1970);
    return u32(seconds) + u32(seconds);
}

QByteArray DRSampleBoxes::english()
{
    return bigEndian(kEnglish);
}

QByteArray DRSampleBoxes::box(const char* type, const QByteArray& content)
{
    return u32(static_cast<quint32>(kHeaderSize + content.size())) + QByteArray(type, 4) + content;
}

QByteArray DRSampleBoxes::versionedBox(const char* type, const QByteArray& content, quint32 flags)
{
    return box(type, u32(flags) + content);
}

QByteArray DRSampleBoxes::movieHeader(const QDateTime& created, quint32 unitsPerSecond, quint32 duration)
{
    return versionedBox("mvhd", dates(created) + u32(unitsPerSecond) + u32(duration) + fixed(1) + u16(0x0100) +
                                    zeros(10) + identityMatrix() + zeros(24) + u32(kNextTrack));
}

QByteArray DRSampleBoxes::dataInThisFile()
{
    return box("dinf", versionedBox("dref", u32(1) + versionedBox("url ", {}, kInThisFile)));
}
