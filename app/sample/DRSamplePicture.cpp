#include "app/sample/DRSamplePicture.h"

#include "app/sample/DRSampleJpeg.h"
#include "app/sample/DRSampleScene.h"

#include <QtEndian>
#include <zlib.h>

namespace {

constexpr char kFilterSub = 1; // a byte is stored as the difference to the pixel on its left

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(sizeof number, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// A chunk: length of the data, type, data, checksum of type and data.
QByteArray chunk(const QByteArray& type, const QByteArray& data)
{
    const QByteArray content = type + data;
    const auto checksum = crc32(0, reinterpret_cast<const Bytef*>(content.constData()), // zlib's bytes are unsigned
                                static_cast<uInt>(content.size()));
    return bigEndian(static_cast<quint32>(data.size())) + content + bigEndian(static_cast<quint32>(checksum));
}

QByteArray filteredRows(const DRSampleScene& scene)
{
    std::vector<quint8> row(static_cast<std::size_t>(scene.width()) * DRSampleScene::kChannels);
    QByteArray rows;
    rows.reserve((static_cast<qsizetype>(row.size()) + 1) * scene.height());
    for (int y = 0; y < scene.height(); ++y) {
        scene.paintRow(y, row);
        rows += kFilterSub;
        for (std::size_t index = 0; index < row.size(); ++index) {
            const int left = index < DRSampleScene::kChannels ? 0 : row[index - DRSampleScene::kChannels];
            rows += static_cast<char>(row[index] - left);
        }
    }
    return rows;
}

} // namespace

QByteArray samplePng(quint64 seed, int width, int height)
{
    const DRSampleScene scene(seed, width, height);
    QByteArray header = bigEndian(static_cast<quint32>(width)) + bigEndian(static_cast<quint32>(height));
    header += QByteArray::fromHex("0802000000"); // 8 bits, red-green-blue; deflate, five filters, not interlaced
    // Qt puts the length of the data before the zlib stream.
    const QByteArray stream = qCompress(filteredRows(scene)).sliced(sizeof(quint32));
    return QByteArray::fromHex("89504E470D0A1A0A") + chunk("IHDR", header) + chunk("IDAT", stream) +
           chunk("IEND", QByteArray());
}

QByteArray sampleJpeg(quint64 seed, int width, int height)
{
    return encodeSampleJpeg(DRSampleScene(seed, width, height));
}
