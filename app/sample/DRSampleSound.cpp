#include "app/sample/DRSampleSound.h"

#include "app/sample/DRSampleBoxes.h"
#include "app/sample/DRSampleRandom.h"

#include <array>
#include <cstdlib>

using namespace DRSampleBoxes;

namespace {

constexpr int kMillisecondsPerSecond = 1000;
constexpr int kTuneRate = 8000; // samples a second
constexpr int kSamplesPerPacket = 4096;
constexpr int kSamplesPerNote = 1024;
constexpr int kBitsPerSample = 16;
constexpr std::array kPeriods{30, 27, 24, 22, 20, 18, 16, 15}; // a scale upwards, in samples
constexpr quint32 kTrackIsOn = 0x7;
constexpr quint32 kTrackId = 1;

/// Collects numbers of any count of bits, the highest first.
class Bits {
public:
    void add(quint32 value, int count)
    {
        for (int bit = count - 1; bit >= 0; --bit) {
            m_pending = (m_pending << 1U) | ((value >> static_cast<quint32>(bit)) & 1U);
            if (++m_pendingCount == 8) {
                m_bytes += static_cast<char>(m_pending);
                m_pending = 0;
                m_pendingCount = 0;
            }
        }
    }

    /// Filled up to a whole byte.
    [[nodiscard]] QByteArray bytes() const
    {
        Bits filled = *this;
        filled.add(0, (8 - m_pendingCount) % 8);
        return filled.m_bytes;
    }

private:
    QByteArray m_bytes;
    quint32 m_pending = 0;
    int m_pendingCount = 0;
};

/// A packet of the lossless coder that says that its samples are not compressed.
QByteArray tunePacket(DRSampleRandom& random)
{
    constexpr int kEnd = 7;
    Bits bits;
    bits.add(0, 3 + 4 + 12 + 1 + 2); // one channel, its number, unused, full length, whole samples
    bits.add(1, 1);                  // not compressed
    for (int note = 0; note < kSamplesPerPacket / kSamplesPerNote; ++note) {
        const int period = random.pick(kPeriods);
        for (int index = 0; index < kSamplesPerNote; ++index) {
            const int height = std::abs(2 * (index % period) - period) * 8000 / period - 4000; // a triangle
            bits.add(static_cast<quint32>(height) & 0xFFFFU, kBitsPerSample);
        }
    }
    bits.add(kEnd, 3);
    return bits.bytes();
}

/// What every sound says of itself, and in it how its coder was set.
QByteArray tuneFormat()
{
    const QByteArray coder = u32(kSamplesPerPacket) + zeros(1) + static_cast<char>(kBitsPerSample) +
                             QByteArray::fromHex("280A0E01") + u16(255) + zeros(8) + u32(kTuneRate);
    return box("alac", zeros(6) + u16(1) + zeros(8) + u16(1) + u16(kBitsPerSample) + zeros(4) + fixed(kTuneRate) +
                           versionedBox("alac", coder));
}

QByteArray tuneTables(int packets, qsizetype packetBytes, qsizetype firstPacket)
{
    const QByteArray count = u32(static_cast<quint32>(packets));
    return box("stbl", versionedBox("stsd", u32(1) + tuneFormat()) +
                           versionedBox("stts", u32(1) + count + u32(kSamplesPerPacket)) +
                           versionedBox("stsc", u32(1) + u32(1) + count + u32(1)) +
                           versionedBox("stsz", u32(static_cast<quint32>(packetBytes)) + count) +
                           versionedBox("stco", u32(1) + u32(static_cast<quint32>(firstPacket))));
}

QByteArray tuneDescription(const QDateTime& created, int packets, const QByteArray& tables)
{
    const auto duration = static_cast<quint32>(packets) * kSamplesPerPacket;
    const QByteArray header = dates(created) + u32(kTuneRate) + u32(duration) + english() + u16(0);
    const QByteArray handler = versionedBox("hdlr", zeros(4) + "soun" + zeros(12) + "Sample" + zeros(1));
    const QByteArray information = versionedBox("smhd", zeros(4)) + dataInThisFile() + tables;
    const QByteArray media = box("mdia", versionedBox("mdhd", header) + handler + box("minf", information));
    const QByteArray track = dates(created) + u32(kTrackId) + zeros(4) + u32(duration) + zeros(12) + u16(0x0100) +
                             zeros(2) + identityMatrix() + zeros(8);
    return box("moov", movieHeader(created, kTuneRate, duration) +
                           box("trak", versionedBox("tkhd", track, kTrackIsOn) + media));
}

/// A text of an ID3 tag of version 3: UTF-16 behind a byte order mark.
QByteArray tagText(const char* type, const QString& text)
{
    QByteArray content = QByteArray::fromHex("01FFFE");
    for (const QChar unit : text) {
        content += static_cast<char>(unit.unicode() & 0xFFU);
        content += static_cast<char>(unit.unicode() >> 8U);
    }
    return QByteArray(type, 4) + u32(static_cast<quint32>(content.size())) + u16(0) + content;
}

/// Seven bits a byte, so that no player takes it for the beginning of sound.
QByteArray tagSize(qsizetype size)
{
    QByteArray bytes;
    for (int shift = 21; shift >= 0; shift -= 7) {
        bytes += static_cast<char>((size >> shift) & 0x7F);
    }
    return bytes;
}

} // namespace

DRSampleSound DRSampleSound::tune(quint64 seed, int verses, const QDateTime& created)
{
    DRSampleRandom random(seed);
    QByteArray packets;
    for (int verse = 0; verse < verses; ++verse) {
        packets += tunePacket(random);
    }
    const QByteArray type = box("ftyp", "M4A " + u32(0) + "M4A mp42isom");
    const qsizetype packetBytes = packets.size() / verses;
    const auto description = [&](qsizetype firstPacket) {
        return tuneDescription(created, verses, tuneTables(verses, packetBytes, firstPacket));
    };
    const qsizetype firstPacket = type.size() + description(0).size() + kHeaderSize;
    return {.bytes = type + description(firstPacket) + box("mdat", packets),
            .milliseconds = qint64{verses} * kSamplesPerPacket * kMillisecondsPerSecond / kTuneRate,
            .samplesPerSecond = kTuneRate};
}

DRSampleSound DRSampleSound::silence(const QString& title, const QString& artist, const QString& album)
{
    constexpr int kFrames = 77;
    constexpr int kSamplesPerFrame = 1152;
    constexpr int kRate = 44100;
    constexpr qsizetype kFrameBytes = 104;
    const QByteArray header = QByteArray::fromHex("FFFB10C0"); // layer 3, 32 kilobits a second, one channel
    const QByteArray frame = header + zeros(kFrameBytes - header.size());
    const QByteArray texts = tagText("TIT2", title) + tagText("TPE1", artist) + tagText("TALB", album);
    return {.bytes = "ID3" + QByteArray::fromHex("030000") + tagSize(texts.size()) + texts + frame.repeated(kFrames),
            .milliseconds = qint64{kFrames} * kSamplesPerFrame * kMillisecondsPerSecond / kRate,
            .samplesPerSecond = kRate};
}
