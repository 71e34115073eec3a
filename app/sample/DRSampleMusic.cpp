#include "app/sample/DRSampleMusic.h"

#include "app/sample/DRSampleMedia.h"
#include "app/sample/DRSampleMusicTexts.h"
#include "app/sample/DRSampleSound.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPropertyList.h"

#include <QDir>
#include <QFile>
#include <QUrl>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 4000;
constexpr qint64 kFirstTrackId = 101;
constexpr int kDaysInLibrary = 500;

bool writeNewFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        qCWarning(lcMigrate) << "cannot write" << path << file.errorString();
        return false;
    }
    return true;
}

QString persistentIdText(quint64 id)
{
    return u"%1"_s.arg(id, 16, 16, QChar(u'0')).toUpper();
}

/// What the music program makes of a text for a name on disk: short, and without what some disk does not take.
QString nameOnDisk(const QString& text)
{
    constexpr qsizetype kLongest = 36;
    QString name = text.left(kLongest);
    if (name.back().isHighSurrogate()) {
        name.chop(1);
    }
    for (QChar& character : name) {
        if (QStringView(u"/\\:*?\"<>|;").contains(character)) {
            character = u'_';
        }
    }
    name = name.trimmed();
    if (name.startsWith(u'.')) {
        name.front() = u'_';
    }
    if (name.endsWith(u'.')) {
        name.back() = u'_';
    }
    return name;
}

struct Recording {
    DRSampleSound sound;
    QStringView extension;
    QStringView description;
};

class Library {
public:
    /// The folder and settings must outlive this object.
    Library(const QString& folder, const QString& finalFolder, const DRSampleSettings& settings)
        : m_folder(folder), m_finalFolder(finalFolder), m_settings(settings)
    {
    }

    [[nodiscard]] bool write()
    {
        for (const DRSampleSong& song : sampleSongs(m_settings.scale)) {
            if (!addSong(song)) {
                return false;
            }
        }
        const QVariantMap library{
            {u"Major Version"_s, 1},
            {u"Minor Version"_s, 1},
            {u"Application Version"_s, u"11.3"_s},
            {u"Date"_s, m_settings.moment},
            {u"Features"_s, 5},
            {u"Show Content Ratings"_s, true},
            {u"Library Persistent ID"_s, persistentIdText(kSeed)},
            {u"Music Folder"_s, location(u""_s)},
            {u"Tracks"_s, m_tracks},
            {u"Playlists"_s, playlists()},
        };
        return writeNewFile(m_folder + u'/' + sampleMusicLibraryName(), DRPropertyList::xmlFromDictionary(library));
    }

private:
    /// The URL of a file below the library's folder, as the music program writes it.
    [[nodiscard]] QString location(const QString& path) const
    {
        return u"file://localhost"_s +
               QString::fromLatin1(QUrl::toPercentEncoding(m_finalFolder + u'/' + path, "/!$&'()*+,=:@"));
    }

    [[nodiscard]] Recording record(const DRSampleSong& song, qint64 index) const
    {
        const quint64 seed = kSeed + static_cast<quint64>(index);
        switch (song.format) {
        case DRSampleSong::Format::Lossless:
            break;
        case DRSampleSong::Format::Mp3:
            return {DRSampleSound::silence(song.title, song.artist, song.album), u"mp3", u"MPEG audio file"};
        case DRSampleSong::Format::Wave:
            return {{.bytes = DRSampleMedia::wave(seed), .milliseconds = 500, .samplesPerSecond = 8000},
                    u"wav",
                    u"WAV audio file"};
        }
        return {DRSampleSound::tune(seed, 1 + static_cast<int>(index % 4), added(index)), u"m4a",
                u"Apple Lossless audio file"};
    }

    [[nodiscard]] QDateTime added(qint64 index) const
    {
        return m_settings.moment.addDays(index % 300 - kDaysInLibrary);
    }

    [[nodiscard]] bool addSong(const DRSampleSong& song)
    {
        const qint64 index = m_tracks.size();
        const auto [sound, extension, description] = record(song, index);
        const QString folder = u"Music/%1/%2"_s.arg(nameOnDisk(song.artist), nameOnDisk(song.album));
        const QString number = u"%1 "_s.arg(song.number, 2, 10, QChar(u'0'));
        const QString path = folder + u'/' + number + nameOnDisk(song.title) + u'.' + extension.toString();
        const qint64 id = kFirstTrackId + 2 * index;
        m_tracks[QString::number(id)] = QVariantMap{
            {u"Track ID"_s, id},
            {u"Name"_s, song.title},
            {u"Artist"_s, song.artist},
            {u"Album"_s, song.album},
            {u"Genre"_s, song.genre},
            {u"Kind"_s, description.toString()},
            {u"Size"_s, qint64{sound.bytes.size()}},
            {u"Total Time"_s, sound.milliseconds},
            {u"Sample Rate"_s, sound.samplesPerSecond},
            {u"Track Number"_s, song.number},
            {u"Track Count"_s, song.count},
            {u"Year"_s, song.year},
            {u"Date Modified"_s, added(index)},
            {u"Date Added"_s, added(index)},
            {u"Persistent ID"_s, persistentIdText(~(kSeed + static_cast<quint64>(index)))},
            {u"Track Type"_s, u"File"_s},
            {u"Location"_s, location(path)},
        };
        return QDir().mkpath(m_folder + u'/' + folder) && writeNewFile(m_folder + u'/' + path, sound.bytes);
    }

    [[nodiscard]] QVariantList playlists() const
    {
        QVariantList list;
        qint64 id = kFirstTrackId + 2 * m_tracks.size();
        for (const DRSamplePlaylist& playlist : samplePlaylists()) {
            QVariantMap entry = marks(playlist.kind);
            entry[u"Name"_s] = playlist.name;
            entry[u"Playlist ID"_s] = id;
            entry[u"Playlist Persistent ID"_s] = persistentIdText(playlist.persistentId);
            entry[u"All Items"_s] = true;
            entry[u"Playlist Items"_s] = items(playlist);
            list += entry;
            id += 3;
        }
        return list;
    }

    /// What tells a playlist that nobody made by hand.
    static QVariantMap marks(DRSamplePlaylist::Kind kind)
    {
        switch (kind) {
        case DRSamplePlaylist::Kind::Taken:
            break;
        case DRSamplePlaylist::Kind::Master:
            return {{u"Master"_s, true}, {u"Visible"_s, false}};
        case DRSamplePlaylist::Kind::BuiltIn:
            return {{u"Distinguished Kind"_s, 4}, {u"Music"_s, true}};
        case DRSamplePlaylist::Kind::Smart:
            return {{u"Smart Info"_s, QByteArray::fromHex("0101000300000019")},
                    {u"Smart Criteria"_s, QByteArray("SLst") + QByteArray(132, '\0')}};
        }
        return {};
    }

    [[nodiscard]] QVariantList items(const DRSamplePlaylist& playlist) const
    {
        QVariantList list;
        for (qint64 index = playlist.from; index < m_tracks.size(); index += playlist.every) {
            list += QVariantMap{{u"Track ID"_s, kFirstTrackId + 2 * index}};
        }
        return list;
    }

    const QString& m_folder;
    const QString& m_finalFolder;
    const DRSampleSettings& m_settings;
    QVariantMap m_tracks;
};

} // namespace

QString sampleMusicLibraryName()
{
    return u"iTunes Music Library.xml"_s;
}

bool writeSampleMusic(const QString& folder, const QString& finalFolder, const DRSampleSettings& settings)
{
    return Library(folder, finalFolder, settings).write();
}
