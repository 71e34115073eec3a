#include "app/sample/DRSampleMovie.h"

#include "app/sample/DRSampleBoxes.h"
#include "app/sample/DRSamplePicture.h"

#include <numeric>
#include <vector>

using namespace DRSampleBoxes;

namespace {

constexpr quint32 kUnitsPerSecond = 600;
constexpr quint32 kUnitsPerPicture = kUnitsPerSecond / 2;
constexpr quint32 kTrackId = 1;
constexpr quint32 kTrackIsShown = 0xF; // enabled, and used in film, preview and poster

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
        const QByteArray type =
            box("ftyp", isQuickTime() ? "qt  " + u32(0x20110700) + "qt  " : "mp42" + u32(0) + "mp42isom");
        const QByteArray data = box("mdat", std::accumulate(m_pictures.begin(), m_pictures.end(), QByteArray()));
        const qsizetype inData = type.size() + kHeaderSize;
        if (m_movie.order == DRSampleMovie::Order::PicturesFirst) {
            return type + data + description(inData);
        }
        // The places are numbers of fixed width, so that their values do not change the size.
        return type + description(inData + description(0).size()) + data;
    }

private:
    [[nodiscard]] quint32 duration() const { return static_cast<quint32>(m_movie.pictures) * kUnitsPerPicture; }
    [[nodiscard]] QByteArray count() const { return u32(static_cast<quint32>(m_pictures.size())); }

    [[nodiscard]] bool isQuickTime() const { return m_movie.container == DRSampleMovie::Container::QuickTime; }

    [[nodiscard]] QByteArray description(qsizetype firstPicture) const
    {
        return box("moov",
                   movieHeader(m_movie.created, kUnitsPerSecond, duration()) + track(firstPicture) + userData());
    }

    [[nodiscard]] QByteArray userData() const
    {
        const QByteArray texts = userText("\xA9nam", m_movie.title) + userText("\xA9xyz", m_movie.location);
        return texts.isEmpty() ? QByteArray() : box("udta", texts);
    }

    static QByteArray userText(const char* type, const QString& text)
    {
        const QByteArray bytes = text.toUtf8();
        return bytes.isEmpty() ? bytes : box(type, u16(static_cast<int>(bytes.size())) + english() + bytes);
    }

    [[nodiscard]] QByteArray track(qsizetype firstPicture) const
    {
        const QByteArray header = dates(m_movie.created) + u32(kTrackId) + zeros(4) + u32(duration()) + zeros(16) +
                                  identityMatrix() + fixed(m_movie.width) + fixed(m_movie.height);
        return box("trak", versionedBox("tkhd", header, kTrackIsShown) + media(firstPicture));
    }

    [[nodiscard]] QByteArray media(qsizetype firstPicture) const
    {
        const QByteArray header = dates(m_movie.created) + u32(kUnitsPerSecond) + u32(duration()) + english() + u16(0);
        const QByteArray information =
            versionedBox("vmhd", zeros(8), 1) + dataHandler() + dataInThisFile() + sampleTables(firstPicture);
        return box("mdia", versionedBox("mdhd", header) + mediaHandler() + box("minf", information));
    }

    [[nodiscard]] QByteArray mediaHandler() const
    {
        return isQuickTime() ? quickTimeHandler("mhlr", "vide")
                             : versionedBox("hdlr", zeros(4) + "vide" + zeros(12) + "Sample" + zeros(1));
    }

    /// What reads the data; MP4 knows only one way.
    [[nodiscard]] QByteArray dataHandler() const
    {
        return isQuickTime() ? quickTimeHandler("dhlr", "url ") : QByteArray();
    }

    static QByteArray quickTimeHandler(const char* kind, const char* subKind)
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
        const QByteArray picture = u16(m_movie.width) + u16(m_movie.height) + resolution + zeros(4) + u16(1);
        if (isQuickTime()) {
            return box("jpeg", reference + encoder + picture + pascalText("Photo - JPEG", 32) + u16(24) + u16(-1));
        }
        return box("mp4v", reference + zeros(16) + picture + zeros(32) + u16(24) + u16(-1) + streamDescription());
    }

    /// Descriptors, each of a tag, a size and its content: the stream, how it is decoded, how it is packed.
    static QByteArray streamDescription()
    {
        const QByteArray decoder = QByteArray::fromHex("040D"
                                                       "6C"
                                                       "11"
                                                       "000000") +
                                   zeros(8); // JPEG, seen
        const QByteArray stream = u16(kTrackId) + zeros(1) + decoder + QByteArray::fromHex("060102");
        return versionedBox("esds", '\x03' + QByteArray(1, static_cast<char>(stream.size())) + stream);
    }

    const DRSampleMovie& m_movie;
    std::vector<QByteArray> m_pictures;
};

} // namespace

QByteArray encodeSampleMovie(const DRSampleMovie& movie)
{
    return Writer(movie).file();
}
