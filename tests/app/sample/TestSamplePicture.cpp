#include "app/sample/DRSamplePicture.h"
#include "tests/support/DRTestTable.h"

#include <QSet>
#include <QtEndian>
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

template <typename Number> Number numberAt(const QByteArray& bytes, qsizetype offset)
{
    return qFromBigEndian<Number>(bytes.sliced(offset, sizeof(Number)).constData());
}

/// The data of a PNG's chunks by type; empty when the file is not a row of whole chunks with true checksums.
QMap<QByteArray, QByteArray> chunksOf(const QByteArray& png)
{
    QMap<QByteArray, QByteArray> chunks;
    qsizetype offset = 8;
    while (offset < png.size()) {
        const qsizetype length = numberAt<quint32>(png, offset);
        const QByteArray content = png.mid(offset + 4, length + 4);
        const auto checksum = crc32(0, reinterpret_cast<const Bytef*>(content.constData()), // zlib's bytes are unsigned
                                    static_cast<uInt>(content.size()));
        if (content.size() != length + 4 || numberAt<quint32>(png, offset + 8 + length) != checksum) {
            return {};
        }
        chunks[content.first(4)] += content.sliced(4);
        offset += length + 12;
    }
    return chunks;
}

struct JpegSegments {
    QByteArray markers; ///< in order, without their 0xFF
    QByteArray frame;   ///< after its length
    qsizetype scanStart = 0;
};

JpegSegments segmentsOf(const QByteArray& jpeg)
{
    JpegSegments segments{.markers = jpeg.mid(1, 1), .frame = {}};
    qsizetype offset = 2;
    while (segments.markers.back() != '\xDA') {
        segments.markers += jpeg.at(offset + 1);
        const qsizetype length = numberAt<quint16>(jpeg, offset + 2);
        if (segments.markers.back() == '\xC0') {
            segments.frame = jpeg.sliced(offset + 4, length - 2);
        }
        offset += 2 + length;
    }
    segments.scanStart = offset;
    return segments;
}

} // namespace

class TestSamplePicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void picturesAreWellFormed_data()
    {
        const DRTestTable<int, int> row("width", "height");
        row("one pixel", 1, 1);
        row("whole blocks", 64, 32);
        row("broken blocks", 333, 217);
        row("one column", 1, 300);
    }

    void picturesAreWellFormed()
    {
        QFETCH(const int, width);
        QFETCH(const int, height);
        const QByteArray png = samplePng(7, width, height);
        QCOMPARE(png.first(8).toHex(), QByteArray("89504e470d0a1a0a"));
        const auto chunks = chunksOf(png);
        QCOMPARE(chunks.keys(), (QList<QByteArray>{"IDAT", "IEND", "IHDR"}));
        QCOMPARE(numberAt<quint32>(chunks["IHDR"], 0), static_cast<quint32>(width));
        QCOMPARE(numberAt<quint32>(chunks["IHDR"], 4), static_cast<quint32>(height));
        const qsizetype rowBytes = 1 + 3 * qsizetype{width};
        QByteArray expectedSize(4, '\0');
        qToBigEndian(static_cast<quint32>(rowBytes * height), expectedSize.data());
        const QByteArray rows = qUncompress(expectedSize + chunks["IDAT"]);
        QCOMPARE(rows.size(), rowBytes * height);
        for (qsizetype row = 0; row < height; ++row) {
            QCOMPARE(int{rows[row * rowBytes]}, 1); // the filter
        }

        const QByteArray jpeg = sampleJpeg(7, width, height);
        const JpegSegments segments = segmentsOf(jpeg);
        QCOMPARE(segments.markers.toHex(), QByteArray("d8e0dbc0c4c4da"));
        QCOMPARE(int{numberAt<quint16>(segments.frame, 1)}, height);
        QCOMPARE(int{numberAt<quint16>(segments.frame, 3)}, width);
        // In the scan a byte 0xFF is followed by 0; the only marker is the end.
        const QByteArray scan = jpeg.sliced(segments.scanStart);
        for (qsizetype at = scan.indexOf('\xFF'); at < scan.size() - 2; at = scan.indexOf('\xFF', at + 1)) {
            QCOMPARE(int{scan[at + 1]}, 0);
        }
        QCOMPARE(scan.last(2).toHex(), QByteArray("ffd9"));
    }

    /// Other decoders show them as the landscape that the PNG holds.
    void aSmallJpegIsTheKnownBytes()
    {
        const QByteArray jpeg = sampleJpeg(3, 9, 9);
        QCOMPARE(jpeg.sliced(segmentsOf(jpeg).scanStart).toHex(),
                 QByteArray("5d3c785e149898e2983ae06fe0ad42f777ad8f9b15ba2cadbb541f61f0dff7969ff6ebdf5a4fb0db570fa47dd6"
                            "fc3fad4b2d323ad0a86a5affd9"));
    }

    void seedsShowInThePicture()
    {
        QSet<QByteArray> pictures;
        for (quint64 seed = 0; seed < 30; ++seed) {
            pictures << samplePng(seed, 16, 16) << sampleJpeg(seed, 16, 16);
        }
        QCOMPARE(pictures.size(), qsizetype{60});
        QCOMPARE(sampleJpeg(5, 40, 30), sampleJpeg(5, 40, 30));
    }
};

QTEST_GUILESS_MAIN(TestSamplePicture)
#include "TestSamplePicture.moc"
