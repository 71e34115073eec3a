#include "app/sample/DRSampleMusicTexts.h"

#include "app/sample/DRSampleResources.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

template <typename Value> struct Named {
    QStringView name;
    Value value;
};

using Format = DRSampleSong::Format;
constexpr std::array kFormats{Named<Format>{u"m4a", Format::Lossless}, Named<Format>{u"mp3", Format::Mp3},
                              Named<Format>{u"wav", Format::Wave}};

using Kind = DRSamplePlaylist::Kind;
constexpr std::array kKinds{Named<Kind>{u"master", Kind::Master}, Named<Kind>{u"builtIn", Kind::BuiltIn},
                            Named<Kind>{u"smart", Kind::Smart}, Named<Kind>{u"taken", Kind::Taken}};

template <typename Table> auto valueNamed(const Table& table, const QString& name)
{
    const auto found =
        std::find_if(table.begin(), table.end(), [&name](const auto& entry) { return entry.name == name; });
    Q_ASSERT(found != table.end());
    return found->value;
}

QJsonObject musicTexts()
{
    return QJsonDocument::fromJson(sampleResource(u"texts/music.json"_s)).object();
}

void appendAlbum(std::vector<DRSampleSong>& songs, const QJsonObject& album, int unit)
{
    const QJsonArray titles = album[u"titles"].toArray();
    const QString name = album[u"album"].toString();
    int number = 0;
    for (const QJsonValue title : titles) {
        songs.push_back({.title = title.toString(),
                         .artist = album[u"artist"].toString(),
                         .album = unit == 0 ? name : u"%1 [%2]"_s.arg(name).arg(unit + 1),
                         .genre = album[u"genre"].toString(),
                         .year = album[u"year"].toInt(),
                         .number = ++number,
                         .count = static_cast<int>(titles.size()),
                         .format = valueNamed(kFormats, album[u"format"].toString())});
    }
}

} // namespace

std::vector<DRSampleSong> sampleSongs(int scale)
{
    const QJsonArray albums = musicTexts()[u"albums"].toArray();
    std::vector<DRSampleSong> songs;
    for (int unit = 0; unit < scale; ++unit) {
        for (const QJsonValue album : albums) {
            appendAlbum(songs, album.toObject(), unit);
        }
    }
    return songs;
}

std::vector<DRSamplePlaylist> samplePlaylists()
{
    constexpr quint64 kSpread = 0x9E37'79B9'7F4A'7C15ULL;
    const QJsonArray texts = musicTexts()[u"playlists"].toArray();
    std::vector<DRSamplePlaylist> playlists;
    quint64 id = 0;
    for (const QJsonValue text : texts) {
        id += kSpread;
        playlists.push_back({.name = text[u"name"].toString(),
                             .kind = valueNamed(kKinds, text[u"kind"].toString()),
                             .persistentId = id,
                             .every = text[u"every"].toInt(1),
                             .from = text[u"from"].toInt()});
    }
    return playlists;
}
