#include "app/sample/DRSampleMovie.h"

#include "app/sample/DRSamplePicture.h"

#include <QtEndian>

#include <numeric>
#include <vector>

namespace {

constexpr qint64 kSecondsFrom1904To1970 = 2'082'844'800;
constexpr quint32 kUnitsPerSecond = 600;
constexpr quint32 kUnitsPerPicture = kUnitsPerSecond / 2;
constexpr quint32 kTrackId = 1;
constexpr quint32 kTrackIsShown = 0xF; // enabled, and used in film, preview and poster
constexpr quint32 kInThisFile = 1;     // flag of a data reference
constexpr quint16 kEnglish = 0x15C7;   // "eng" in five bits a letter
constexpr qsizetype kBoxHeaderSize = 8;

template <typename Integer> QByteArray bigEndian(Integer value)
{
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray u16(int value)
{
    return bigEndian(static_cast<quint16>(value));
}

QByteArray u32(quint32 value)
{
    return bigEndian(value);
}

/// A number with 16 bits behind the point.
QByteArray fixed(int value)
{
    return u32(static_cast<quint32>(value) << 16U);
}

QByteArray zeros(qsizetype count)
{
    return {count, '\0'};
}

QByteArray box(const char* type, const QByteArray& content)
{
    return u32(static_cast<quint32>(kBoxHeaderSize + content.size())) + QByteArray(type, 4) + content;
}

/// A box whose content begins with a version, here 0, and flags.
QByteArray versionedBox(const char* type, const QByteArray& content, quint32 flags = 0)
{
    return box(type, u32(flags) + content);
}

/// A text with its length in front, filled up to `width` bytes.
QByteArray pascalText(const QByteArray& text, qsizetype width)
{
    return static_cast<char>(text.size()) + text + zeros(width - 1 - text.size());
}

/// Neither turned nor scaled.
QByteArray identityMatrix()
{
    const QByteArray one = fixed(1);
    return one + zeros(12) + one + zeros(12) + u32(1U << 30U);
}

class Writer {
public:
    explicit Writer(const DRSampleMovie& movie) : m_movie(movie)
    {
        for (int index = 0; index < movie.pictures; ++index) {
            const quint64 seed = movie.seed * 1000 + static_cast<quint64>(index);
            m_pictures.push_back(sampleJpeg(seed, movie.width, movie.height));
        }
    }

    [[nodiscard]] QByteArray file() const
    {
        const QByteArray type = box("ftyp", "qt  " + u32(0x20110700) + "qt  ");
        const QByteArray data = box("mdat", std::accumulate(m_pictures.begin(), m_pictures.end(), QByteArray()));
        const qsizetype inData = type.size() + kBoxHeaderSize;
        if (m_movie.order == DRSampleMovie::Order::PicturesFirst) {
            return type + data + description(inData);
        }
        // The places are numbers of fixed width, so that their values do not change the size.
        return type + description(inData + description(0).size()) + data;
    }

private:
    [[nodiscard]] quint32 duration() const { return static_cast<quint32>(m_movie.pictures) * kUnitsPerPicture; }
    [[nodiscard]] QByteArray count() const { return u32(static_cast<quint32>(m_pictures.size())); }

    /// When it was made and last changed.
    [[nodiscard]] QByteArray dates() const
    {
        const auto seconds = static_cast<quint32>(m_movie.created.toSecsSinceEpoch() + kSecondsFrom1904To1970);
        return u32(seconds) + u32(seconds);
    }

    [[nodiscard]] QByteArray description(qsizetype firstPicture) const
    {
        const QByteArray header = dates() + u32(kUnitsPerSecond) + u32(duration()) + fixed(1) + u16(0x0100) +
                                  zeros(10) + identityMatrix() + zeros(24) + u32(kTrackId + 1);
        return box("moov", versionedBox("mvhd", header) + track(firstPicture) + userData());
    }

    [[nodiscard]] QByteArray userData() const
    {
        return box("udta", userText("\xA9nam", m_movie.title) + userText("\xA9xyz", m_movie.location));
    }

    static QByteArray userText(const char* type, const QString& text)
    {
        const QByteArray bytes = text.toUtf8();
        return box(type, u16(static_cast<int>(bytes.size())) + bigEndian(kEnglish) + bytes);
    }

    [[nodiscard]] QByteArray track(qsizetype firstPicture) const
    {
        const QByteArray header = dates() + u32(kTrackId) + zeros(4) + u32(duration()) + zeros(16) + identityMatrix() +
                                  fixed(m_movie.width) + fixed(m_movie.height);
        return box("trak", versionedBox("tkhd", header, kTrackIsShown) + media(firstPicture));
    }

    [[nodiscard]] QByteArray media(qsizetype firstPicture) const
    {
        const QByteArray header = dates() + u32(kUnitsPerSecond) + u32(duration()) + bigEndian(kEnglish) + u16(0);
        const QByteArray references = versionedBox("dref", u32(1) + versionedBox("url ", {}, kInThisFile));
        const QByteArray information = versionedBox("vmhd", zeros(8), 1) + handler("dhlr", "url ") +
                                       box("dinf", references) + sampleTables(firstPicture);
        return box("mdia", versionedBox("mdhd", header) + handler("mhlr", "vide") + box("minf", information));
    }

    static QByteArray handler(const char* kind, const char* subKind)
    {
        return versionedBox("hdlr", QByteArray(kind, 4) + QByteArray(subKind, 4) + zeros(12) + pascalText("Sample", 7));
    }

    [[nodiscard]] QByteArray sampleTables(qsizetype firstPicture) const
    {
        QByteArray sizes;
        QByteArray places;
        qsizetype place = firstPicture;
        for (const QByteArray& picture : m_pictures) {
            sizes += u32(static_cast<quint32>(picture.size()));
            places += u32(static_cast<quint32>(place));
            place += picture.size();
        }
        return box("stbl", versionedBox("stsd", u32(1) + pictureFormat()) +
                               versionedBox("stts", u32(1) + count() + u32(kUnitsPerPicture)) +
                               versionedBox("stsc", u32(1) + u32(1) + u32(1) + u32(1)) +
                               versionedBox("stsz", u32(0) + count() + sizes) + versionedBox("stco", count() + places));
    }

    [[nodiscard]] QByteArray pictureFormat() const
    {
        const QByteArray reference = zeros(6) + u16(1);
        const QByteArray encoder = zeros(8) + u32(0) + u32(512); // version, maker, qualities in time and space
        const QByteArray resolution = fixed(72) + fixed(72);
        return box("jpeg", reference + encoder + u16(m_movie.width) + u16(m_movie.height) + resolution + zeros(4) +
                               u16(1) + pascalText("Photo - JPEG", 32) + u16(24) + bigEndian(quint16{0xFFFF}));
    }

    const DRSampleMovie& m_movie;
    std::vector<QByteArray> m_pictures;
};

} // namespace

QByteArray encodeSampleMovie(const DRSampleMovie& movie)
{
    return Writer(movie).file();
}
