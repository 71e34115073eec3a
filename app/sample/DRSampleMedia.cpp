#include "app/sample/DRSampleMedia.h"

#include <QtEndian>

#include <array>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

template <typename Integer> QByteArray littleEndian(Integer value)
{
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray chunk(const char* type, const QByteArray& data)
{
    return QByteArray(type, 4) + littleEndian(static_cast<quint32>(data.size())) + data;
}

constexpr int kGifSide = 32;
constexpr int kGifColours = 128;
constexpr int kGifClear = kGifColours; // the code that forgets the table of repetitions
constexpr int kGifEnd = kGifClear + 1;

/// The pixels without any compression: forgetting the table before it grows past 8 bits keeps every code a byte.
QByteArray gifCodes()
{
    constexpr int kPixelsPerTable = 100;
    QByteArray codes;
    for (int pixel = 0; pixel < kGifSide * kGifSide; ++pixel) {
        if (pixel % kPixelsPerTable == 0) {
            codes += static_cast<char>(kGifClear);
        }
        const int shade = 2 * (pixel % kGifSide) + 2 * (pixel / kGifSide);
        codes += static_cast<char>(shade % kGifColours);
    }
    return codes + static_cast<char>(kGifEnd);
}

QByteArray gifBlocks(const QByteArray& bytes)
{
    constexpr qsizetype kMostBytes = 255;
    QByteArray blocks;
    for (qsizetype start = 0; start < bytes.size(); start += kMostBytes) {
        const QByteArray block = bytes.mid(start, kMostBytes);
        blocks += static_cast<char>(block.size());
        blocks += block;
    }
    return blocks + '\0';
}

constexpr quint32 kSamplesPerSecond = 8000;

} // namespace

QByteArray DRSampleMedia::gif(quint64 seed)
{
    const QByteArray size = littleEndian(quint16{kGifSide}) + littleEndian(quint16{kGifSide});
    QByteArray bytes = "GIF89a" + size + QByteArray::fromHex("F60000"); // a table of 128 colours of 8 bits
    for (int colour = 0; colour < kGifColours; ++colour) {
        for (quint64 channel = 0; channel < 3; ++channel) {
            const bool isFull = (seed + channel) % 3 == 0;
            bytes += static_cast<char>(isFull ? 255 - colour : colour);
        }
    }
    return bytes + ',' + QByteArray(4, '\0') + size + '\0' + '\7' + gifBlocks(gifCodes()) + ';';
}

QByteArray DRSampleMedia::wave(quint64 seed)
{
    const int period = 12 + static_cast<int>(seed % 24);
    QByteArray samples;
    for (int index = 0; index < static_cast<int>(kSamplesPerSecond) / 2; ++index) {
        const int height = std::abs(2 * (index % period) - period) * 100 / period; // a triangle
        samples += static_cast<char>(78 + height);
    }
    const QByteArray format = littleEndian(quint16{1}) + littleEndian(quint16{1}) + littleEndian(kSamplesPerSecond) +
                              littleEndian(kSamplesPerSecond) + littleEndian(quint16{1}) + littleEndian(quint16{8});
    return chunk("RIFF", "WAVE" + chunk("fmt ", format) + chunk("data", samples));
}

QByteArray DRSampleMedia::amr(quint64 seed)
{
    constexpr qsizetype kFramesPerSecond = 50;
    constexpr char kNoSpeech = 0x7C; // type 15, intact, without data
    return "#!AMR\n" + QByteArray(kFramesPerSecond * (1 + static_cast<qsizetype>(seed % 5)), kNoSpeech);
}

QByteArray DRSampleMedia::pdf(const QByteArray& line)
{
    const QByteArray drawing = "BT /F1 18 Tf 72 720 Td (" + line + ") Tj ET\n";
    const std::array<QByteArray, 5> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> "
        ">>",
        "<< /Length " + QByteArray::number(drawing.size()) + " >>\nstream\n" + drawing + "endstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
    };
    QByteArray bytes = "%PDF-1.4\n";
    QByteArray places = "0000000000 65535 f \n";
    int number = 0;
    for (const QByteArray& object : objects) {
        places += QByteArray::number(bytes.size()).rightJustified(10, '0') + " 00000 n \n";
        bytes += QByteArray::number(++number) + " 0 obj\n" + object + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(number + 1);
    const QByteArray place = QByteArray::number(bytes.size());
    return bytes + "xref\n0 " + count + '\n' + places + "trailer\n<< /Size " + count + " /Root 1 0 R >>\nstartxref\n" +
           place + "\n%%EOF\n";
}

QByteArray DRSampleMedia::vCard(const QString& name)
{
    return u"BEGIN:VCARD\r\nVERSION:3.0\r\nN:%1;;;;\r\nFN:%1\r\nTEL;TYPE=CELL:+15550100142\r\nEND:VCARD\r\n"_s.arg(name)
        .toUtf8();
}
