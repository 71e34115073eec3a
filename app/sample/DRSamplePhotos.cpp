#include "app/sample/DRSamplePhotos.h"

#include "app/sample/DRSampleCoreData.h"
#include "app/sample/DRSampleGuid.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleMovie.h"
#include "app/sample/DRSamplePicture.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRDatabase.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 1000; // other pictures than those of contacts and messages
constexpr int kAssetsPerScale = 66;
constexpr int kBeforeNewPhonePerScale = 44; // then somebody got a new phone, which counts anew
constexpr int kAssetsPerFolder = 999;
constexpr int kHighestNumber = 9999;
constexpr qint64 kSecondsOfPhotos = qint64{390} * 86'400;
constexpr qint64 kAlbumEntity = 11; // numbers of Core Data's entities, also in names of columns
constexpr qint64 kAssetEntity = 17;
constexpr qint64 kOrderStep = 1024;

struct Size {
    int width;
    int height;
};
constexpr std::array kPhotoSizes{Size{320, 240}, Size{320, 240}, Size{240, 320}, Size{480, 120}, Size{200, 200}};
constexpr Size kScreen{160, 284};
constexpr Size kFilmSize{160, 120};

struct Film {
    QStringView extension;
    DRSampleMovie::Container container;
    DRSampleMovie::Order order;
    bool hasUserData;
};
using Container = DRSampleMovie::Container;
using Order = DRSampleMovie::Order;
constexpr std::array kFilms{
    Film{u"MOV", Container::QuickTime, Order::DescriptionFirst, true},
    Film{u"MOV", Container::QuickTime, Order::PicturesFirst, true},
    Film{u"MP4", Container::Mp4, Order::DescriptionFirst, true},
    Film{u"MOV", Container::QuickTime, Order::DescriptionFirst, false},
    Film{u"MOV", Container::QuickTime, Order::DescriptionFirst, true},
    Film{u"MP4", Container::Mp4, Order::PicturesFirst, false},
};

struct Asset {
    qint64 key = 0;
    QString folder; ///< below "Media"
    QString name;
    QString uti;
    Size size{};
    bool isFilm = false;
    QDateTime created;
};

struct Content {
    QStringView extension;
    QStringView uti;
    Size size;
    QByteArray bytes;
};

/// Of eleven assets in a row one is a film and one a picture of the screen.
class Camera {
public:
    /// The settings must outlive this object.
    explicit Camera(const DRSampleSettings& settings) : m_settings(settings) {}

    [[nodiscard]] int count() const { return kAssetsPerScale * m_settings.scale; }

    static bool isFilm(int index) { return index % 11 == 10; }
    static bool isScreen(int index) { return index % 11 == 4; }

    [[nodiscard]] Asset describe(int index, const Content& content) const
    {
        const int before = kBeforeNewPhonePerScale * m_settings.scale;
        const bool isNewPhone = index >= before;
        const int number = isNewPhone ? index - before : index;
        const int folder = 100 + number / kAssetsPerFolder + (isNewPhone ? 1 + (before - 1) / kAssetsPerFolder : 0);
        return {.key = index + 1,
                .folder = u"DCIM/%1APPLE"_s.arg(folder),
                .name = u"IMG_%1.%2"_s.arg(number % kHighestNumber + 1, 4, 10, QChar(u'0')).arg(content.extension),
                .uti = content.uti.toString(),
                .size = content.size,
                .isFilm = isFilm(index),
                .created = created(index)};
    }

    [[nodiscard]] Content shoot(int index) const
    {
        const quint64 seed = kSeed + static_cast<quint64>(index);
        if (isFilm(index)) {
            return shootFilm(index, seed);
        }
        if (isScreen(index)) {
            return {u"PNG", u"public.png", kScreen, samplePng(seed, kScreen.width, kScreen.height)};
        }
        const Size size = kPhotoSizes.at(static_cast<std::size_t>(index) % kPhotoSizes.size());
        return {u"JPG", u"public.jpeg", size, sampleJpeg(seed, size.width, size.height)};
    }

private:
    [[nodiscard]] QDateTime created(int index) const
    {
        return m_settings.moment.addSecs(-(kSecondsOfPhotos * (count() - index) / count()));
    }

    [[nodiscard]] Content shootFilm(int index, quint64 seed) const
    {
        const Film& film = kFilms.at(static_cast<std::size_t>(index) / 11 % kFilms.size());
        const DRSampleMovie movie{.seed = seed,
                                  .width = kFilmSize.width,
                                  .height = kFilmSize.height,
                                  .created = created(index),
                                  .title = film.hasUserData ? u"Vid stranden %1"_s.arg(index) : QString(),
                                  .location = film.hasUserData ? u"+59.3293+018.0686/"_s : QString(),
                                  .order = film.order,
                                  .container = film.container};
        const bool isQuickTime = film.container == Container::QuickTime;
        return {film.extension, isQuickTime ? u"com.apple.quicktime-movie" : u"public.mpeg-4", kFilmSize,
                encodeSampleMovie(movie)};
    }

    const DRSampleSettings& m_settings;
};

struct Album {
    qint64 key;
    qint64 kind;       ///< 1000: the camera roll, 2: made by hand
    QStringView title; ///< empty for none
    int oneAssetIn;
};
constexpr std::array kAlbums{
    Album{1, 2, u"Sommar p\u00E5 sj\u00F6n \U0001F3D6", 6},
    Album{2, 1000, {}, 1},
    Album{3, 2, u"Utskrift / Farmor", 20},
};

QByteArray uuid(const QString& thing)
{
    return QByteArray::fromHex(sampleGuid(thing).toLatin1());
}

bool insertAssets(DRDatabase& database, const std::vector<Asset>& assets)
{
    DRStatement insert = database.prepare(
        u"INSERT INTO ZGENERICASSET (Z_PK, Z_ENT, Z_OPT, ZCLOUDISDELETABLE, ZCLOUDISMYASSET, ZCOMPLETE, ZHEIGHT, "
        u"ZKIND, "
        "ZKINDSUBTYPE, ZORIENTATION, ZSAVEDASSETTYPE, ZTHUMBNAILINDEX, ZVISIBILITYSTATE, ZWIDTH, ZDATECREATED, "
        "ZMODIFICATIONDATE, ZSORTTOKEN, ZDIRECTORY, ZFILENAME, ZUNIFORMTYPEIDENTIFIER, ZUUID) "
        "VALUES (?1, ?2, 2, 1, 1, 1, ?3, ?4, 0, 1, 0, ?1 - 1, 0, ?5, ?6, ?6, ?6, ?7, ?8, ?9, ?10)"_s);
    return std::all_of(assets.begin(), assets.end(), [&insert](const Asset& asset) {
        return insert.update({asset.key, kAssetEntity, qint64{asset.size.height}, qint64{asset.isFilm ? 1 : 0},
                              qint64{asset.size.width}, DRDates::toReferenceSeconds(asset.created), asset.folder,
                              asset.name, asset.uti, uuid(u"asset %1"_s.arg(asset.key))});
    });
}

bool insertAlbum(DRDatabase& database, const Album& album, const std::vector<Asset>& assets)
{
    DRStatement join = database.prepare(u"INSERT INTO Z_11ASSETS VALUES (?, ?, ?)"_s);
    qint64 count = 0;
    qint64 films = 0;
    for (const Asset& asset : assets) {
        if ((asset.key - 1) % album.oneAssetIn != 0) {
            continue;
        }
        ++count;
        films += asset.isFilm ? 1 : 0;
        if (!join.update({album.key, asset.key, kOrderStep * count})) {
            return false;
        }
    }
    const QString title = album.title.isEmpty() ? QString() : album.title.toString();
    return database.executeUpdate(
        u"INSERT INTO ZGENERICALBUM (Z_PK, Z_ENT, Z_OPT, ZCACHEDCOUNT, ZCACHEDPHOTOSCOUNT, ZCACHEDVIDEOSCOUNT, ZKIND, "
        "ZKEYASSET, Z17_KEYASSET, ZTITLE, ZUUID) VALUES (?1, ?2, 2, ?3, ?3 - ?4, ?4, ?5, 1, ?6, ?7, ?8)"_s,
        {album.key, kAlbumEntity, count, films, album.kind, kAssetEntity, title, uuid(u"album %1"_s.arg(album.key))});
}

bool insertLibrary(DRDatabase& database, const std::vector<Asset>& assets)
{
    return insertAssets(database, assets) &&
           std::all_of(kAlbums.begin(), kAlbums.end(),
                       [&](const Album& album) { return insertAlbum(database, album, assets); }) &&
           insertSampleCoreData(database, u"photo library"_s,
                                {{kAlbumEntity, u"GenericAlbum"_s, static_cast<qint64>(kAlbums.size())},
                                 {kAssetEntity, u"GenericAsset"_s, static_cast<qint64>(assets.size())}});
}

} // namespace

bool addIPhonePhotos(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    const QString domain = u"CameraRollDomain"_s;
    const Camera camera(settings);
    std::vector<Asset> assets;
    for (int index = 0; index < camera.count(); ++index) {
        const Content content = camera.shoot(index);
        const Asset& asset = assets.emplace_back(camera.describe(index, content));
        if (!backup.addData({.domain = domain, .path = u"Media/%1/%2"_s.arg(asset.folder, asset.name)},
                            content.bytes)) {
            return false;
        }
    }
    return backup.addDatabase({.domain = domain, .path = u"Media/PhotoData/Photos.sqlite"_s}, {u"iphone_photos"_s},
                              [&assets](DRDatabase& database) { return insertLibrary(database, assets); });
}
