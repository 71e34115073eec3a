#include "app/sample/DRSampleSound.h"
#include "tests/app/sample/DRBoxReading.h"
#include "tests/support/DRTestTable.h"

using namespace DRBoxReading;
using namespace Qt::StringLiterals;

namespace {

/// A number of 16 bits at any bit.
int sampleAt(const QByteArray& packet, qsizetype bit)
{
    const quint32 bits = (number(packet, bit / 8) << static_cast<quint32>(bit % 8)) >> 16U;
    return static_cast<qint16>(bits);
}

} // namespace

class TestSampleSound : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tuneIsWhereItsTablesSay_data()
    {
        const DRTestTable<int, qint64> row("verses", "milliseconds");
        row("the shortest", 1, 512);
        row("a longer one", 5, 2560);
    }

    void tuneIsWhereItsTablesSay()
    {
        QFETCH(const int, verses);
        QFETCH(const qint64, milliseconds);
        const auto sound = DRSampleSound::tune(7, verses, QDateTime::fromSecsSinceEpoch(1399273689));
        QCOMPARE(sound.milliseconds, milliseconds);
        const QByteArray tables = "moov/trak/mdia/minf/stbl/";
        const qsizetype packetBytes = number(boxContent(sound.bytes, tables + "stsz"), 4);
        QCOMPARE(int(number(boxContent(sound.bytes, tables + "stsz"), 8)), verses);
        const QByteArray data = boxContent(sound.bytes, "mdat");
        QCOMPARE(data.size(), packetBytes * verses);
        QCOMPARE(sound.bytes.mid(number(boxContent(sound.bytes, tables + "stco"), 8), data.size()), data);

        constexpr qsizetype kHeaderBits = 23;
        for (int verse = 0; verse < verses; ++verse) {
            const QByteArray packet = data.mid(verse * packetBytes, packetBytes);
            QCOMPARE(packet.first(2).toHex(), "0000");     // one channel of the usual length
            QCOMPARE(packet[2] & 0xFE, 2);                 // not compressed
            QCOMPARE(sampleAt(packet, kHeaderBits), 4000); // a crest
            QCOMPARE(sampleAt(packet, kHeaderBits + qsizetype{1024} * 16), 4000);
            QCOMPARE((packet.back() & 0xC0) | (packet[packetBytes - 2] & 1), 0xC1); // the end, three ones
        }
    }

    void silenceTellsWhatItIs()
    {
        const auto sound = DRSampleSound::silence(u"Kväll 🌊"_s, u"Zoë"_s, u"Små"_s);
        QCOMPARE(sound.bytes.first(6).toHex(), "494433030000");
        const qsizetype tagBytes = sound.bytes[8] * 128 + sound.bytes[9];
        QCOMPARE(sound.bytes.mid(10, 17).toHex(' '), "54 49 54 32 00 00 00 13 00 00 01 ff fe 4b 00 76 00"); // UTF-16
        const QByteArray frames = sound.bytes.sliced(10 + tagBytes);
        QCOMPARE(frames.size() % 104, 0);
        for (qsizetype frame = 0; frame < frames.size(); frame += 104) {
            QCOMPARE(frames.mid(frame, 4).toHex(), "fffb10c0");
        }
    }
};

QTEST_GUILESS_MAIN(TestSampleSound)
#include "TestSampleSound.moc"
