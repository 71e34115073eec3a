#include "platform/device/DRDCFile.h"
#include "platform/media_library/DRMDFileProcessorCreateM3U.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

struct Song {
    QString artist;
    QString title;
    qint64 milliseconds = 0;
    QString place; ///< empty: it did not reach the phone
};

DRDCFilePointer recordOf(const Song& song)
{
    auto file = DRDCFile::fileWithSourcePath(u"/m/file.mp3"_s);
    file->setMetadata(song.artist, QLatin1StringView(DRDCFile::kArtist));
    file->setMetadata(song.title, QLatin1StringView(DRDCFile::kTitle));
    file->setMetadata(song.milliseconds, QLatin1StringView(DRDCFile::kDuration));
    if (!song.place.isEmpty()) {
        file->setMetadata(song.place, QLatin1StringView(DRDCFile::kPlaceOnPhone));
    }
    return file;
}

} // namespace

class TestPlaylistFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesPlaylists_data()
    {
        const DRTestTable<QString, QList<Song>, QByteArray> row("path", "songs", "text"); // text: empty: no playlist

        const QString path = u"Music/P.m3u"_s;
        row("places", path,
            {{u"Ä"_s, u"T"_s, 61500, u"Music/Ä/B/t (2).mp3"_s}, {u""_s, u"U"_s, 61499, u"Music/u.mp3"_s}},
            "#EXTM3U\n#EXTINF:62,Ä - T\nÄ/B/t (2).mp3\n#EXTINF:61,U\nu.mp3\n");
        row("another folder", u"Lists/P.m3u"_s, {{u"A"_s, u"T"_s, 1000, u"Music/A/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:1,A - T\n../Music/A/t.mp3\n");
        row("at the top", u"P.m3u"_s, {{u"A"_s, u"T"_s, 1000, u"t.mp3"_s}}, "#EXTM3U\n#EXTINF:1,A - T\nt.mp3\n");
        row("twice in it", path, {{u""_s, u"T"_s, 1000, u"Music/t.mp3"_s}, {u""_s, u"T"_s, 1000, u"Music/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:1,T\nt.mp3\n#EXTINF:1,T\nt.mp3\n");
        row("only what reached the phone", path,
            {{u"A"_s, u"lost"_s, 1000, {}}, {u"A"_s, u"T"_s, 1000, u"Music/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:1,A - T\nt.mp3\n");
        row("nothing reached the phone", path, {{u"A"_s, u"lost"_s, 1000, {}}}, {});
        row("line breaks", path, {{u"A\r\n/etc/passwd"_s, u"T\n#EXT\u2028x"_s, 1000, u"Music/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:1,A /etc/passwd - T #EXT x\nt.mp3\n");
        row("no comment", path, {{u""_s, u"T"_s, 1000, u"Music/#1/B/t.mp3"_s}}, "#EXTM3U\n#EXTINF:1,T\n./#1/B/t.mp3\n");
        row("unknown name and length", path, {{u""_s, u""_s, 0, u"Music/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:-1,file.mp3\nt.mp3\n");
        row("lone surrogate", path, {{u""_s, QString(QChar(0xD800)), 1000, u"Music/t.mp3"_s}},
            "#EXTM3U\n#EXTINF:1,\xEF\xBF\xBD\nt.mp3\n");
    }

    void writesPlaylists()
    {
        QFETCH(const QString, path);
        QFETCH(const QList<Song>, songs);
        DRDCFileReferences references;
        for (const Song& song : songs) {
            references.push_back(recordOf(song));
        }
        DRDCFile playlist;
        playlist.setMetadata(path, QLatin1StringView(DRDCFile::kTargetPath));
        playlist.setMetadata(QVariant::fromValue(references), QLatin1StringView(DRDCFile::kFileReferences));
        QTEST(DRMDFileProcessorCreateM3U::fileProcessor()->contentForFile(playlist).value_or(QByteArray()), "text");
    }
};

QTEST_GUILESS_MAIN(TestPlaylistFile)
#include "TestPlaylistFile.moc"
