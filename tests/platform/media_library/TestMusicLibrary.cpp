#include "platform/core/DRUserFolders.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "platform/media_library/DRMusicLibrary.h"
#include "platform/media_library/DRMusicLibraryReader.h"
#include "platform/media_library/DRMusicLocation.h"
#include "tests/support/DRMusicLibraryText.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace DRMusicLibraryText;

namespace {

const QByteArray kTwoTracks = track(1, "One", "file:///m/1.mp3") + track(2, "Two", "file:///m/2.mp3");
const QByteArray kWhole = library(kTwoTracks, playlist("P", "0A", {1, 2}) + playlist("Q", "0B", {2}));

/// The whole library with an entity of its own.
QByteArray defining(const QByteArray& entity)
{
    return QByteArray(kWhole).replace("1.0.dtd\"", "1.0.dtd\" [" + entity + ']');
}
const QString kEnds = u"it ends in its middle"_s;

QString metadataText(const DRDCFilePointer& file, const char* key)
{
    return file->metadataForKey(QLatin1StringView(key)).toString();
}

QStringList namesOf(const std::vector<DRDCFilePointer>& files)
{
    QStringList names;
    for (const DRDCFilePointer& file : files) {
        names.append(file->displayName());
    }
    return names;
}

/// "1:One|2:Two" and "P:1,2|Q:2".
QString tracksText(const DRMusicLibraryContent& content)
{
    QStringList texts;
    for (const auto& [id, track] : content.tracks) {
        texts.append(u"%1:%2"_s.arg(id).arg(track.title));
    }
    return texts.join(u'|');
}

QString playlistsText(const DRMusicLibraryContent& content)
{
    QStringList texts;
    for (const DRMusicPlaylist& playlist : content.playlists) {
        QStringList ids;
        for (const qint64 id : playlist.trackIDs) {
            ids.append(QString::number(id));
        }
        texts.append(playlist.name + u':' + ids.join(u','));
    }
    return texts.join(u'|');
}

} // namespace

class TestMusicLibrary : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString written(const QByteArray& bytes)
    {
        QString path = m_folder.filePath(u"Library.xml"_s);
        QFile::remove(path); // quicker than to write over it
        return writeFile(path, bytes) ? path : QString();
    }

private Q_SLOTS:
    void readsLocations_data()
    {
        const DRTestTable<QString> row("path");
        row("file:///m/a.mp3", u"/m/a.mp3"_s);
        row("file://localhost/m/a%20b%23%3F.mp3", u"/m/a b#?.mp3"_s);
        row("FILE://LocalHost/m/%C3%A4+.mp3", u"/m/ä+.mp3"_s);
        row("file://localhost/m/old.mp3/", u"/m/old.mp3"_s);
        for (const char* none :
             {"", "file://", "file:///", "file://otherhost/m/a.mp3", "http://example.com/a.mp3", "/m/a.mp3",
              "file://localhost/C:/Music/a.mp3", "file:///C%3A/a.mp3", "file:///m/a%00.mp3"}) {
            row(*none == '\0' ? "none" : none, {});
        }
    }

    void readsLocations()
    {
        const QString location = QString::fromUtf8(QTest::currentDataTag());
        QTEST(DRMusicLocation::localPath(location), "path");
    }

    void tellsKindsOfTracks_data()
    {
        const DRTestTable<QByteArray, QByteArray, quint32> row("location", "flag", "kind");
        row("song", "file:///m/a.MP3", "", 4);
        row("song that is missing", "", "", 4);
        row("private file called a song", "file:///home/a/.ssh/id_rsa", "", 0);
        row("extension of a folder", "file:///m/x.mp3/id_rsa", "", 0);
        row("podcast", "file:///m/a.mp3", "Podcast", 0);
        row("video", "file:///m/a.m4v", "", 8);
        row("video in a song's file", "file:///m/a.m4a", "Has Video", 8);
        row("never a playlist", "file:///m/a.m3u", "", 0);
    }

    void tellsKindsOfTracks()
    {
        QFETCH(const QByteArray, location);
        QFETCH(const QByteArray, flag);
        const Values values = flag.isEmpty() ? Values{} : Values{{flag, "<true/>"}};
        const auto content = DRMusicLibraryReader::read(written(library(track(1, "T", location, values), {})));
        QTEST(content.tracks.at(1).fileKind, "kind");
    }

    void readsHostileFiles_data()
    {
        // problem: empty: none
        const DRTestTable<QByteArray, QString, QString, QString> row("file", "tracks", "playlists", "problem");

        const QString noList = u"it is no property list"_s;
        const QString both = u"1:One|2:Two"_s;
        row("whole", kWhole, both, u"P:1,2|Q:2"_s, {});
        row("empty file", "", {}, {}, kEnds);
        row("binary", "bplist00\xD0", {}, {}, u"it is damaged at line 1"_s);
        row("other XML", "<html><body/></html>", {}, {}, noList);
        row("an array", kHead + "<array/></plist>", {}, {}, noList);
        row("nothing in it", kHead + "<dict/></plist>", {}, {}, {});
        row("tracks only", kHead + "<dict><key>Tracks</key><dict>" + kTwoTracks + "</dict></dict></plist>", both, {},
            {});
        row("wrong types",
            kHead + dictionary({{"Playlists", "<dict><key>a</key><array/></dict>"}, {"Tracks", integer(1)}}) +
                "</plist>",
            {}, {}, {});
        row("wrong types within",
            library(track(1, "T", {}), playlist("P", "", {1})).replace("<string>T</string>", "<array><true/></array>"),
            u"1:"_s, u"P:1"_s, {});
        row("a key without a value",
            kHead + "<dict><key>Tracks</key><dict>" + kTwoTracks + "<key>3</key></dict></dict></plist>", both, {},
            noList);
        row("markup in a text", library(track(1, "<b>x</b>", {}), {}), {}, {}, noList);
        row("not well formed", QByteArray(kWhole).replace("<key>Playlists</key>", "<key>Playlists<key>"), both, {},
            noList);
        row("invalid UTF-8", QByteArray(kWhole).replace("Two", "T\xFFo"), {}, {},
            u"it is damaged"_s); // which is noticed when a chunk is decoded
        row("entities of XML", library(track(1, "R&amp;B &#60;&#x1F3B5;", {}), {}), u"1:R&B <🎵"_s, {}, {});
        row("unknown entity", QByteArray(kWhole).replace("Two", "&two;"), u"1:One"_s, {}, noList);
        row("entity of its own", defining("<!ENTITY two 'lol'>").replace("Two", "&two;"), {}, {},
            u"it defines entities of its own"_s);
        row("entity that is a file", defining("<!ENTITY two SYSTEM 'file:///etc/passwd'>"), {}, {},
            u"it defines entities of its own"_s);
        row("nested deeply", library(kTwoTracks, QByteArray("<array>").repeated(100'000)), both, {},
            u"it is nested too deeply"_s);
        row("endless text", library(kTwoTracks + track(3, QByteArray(5'000'000, 'x'), {}), playlist("P", "0A", {1})),
            both, {}, u"it holds a value that is too long"_s);
        row("something behind it", kWhole + "<plist/>", both, u"P:1,2|Q:2"_s, u"it is damaged"_s);
    }

    void readsHostileFiles()
    {
        QFETCH(const QByteArray, file);
        QFETCH(const QString, problem);
        const DRMusicLibraryContent content = DRMusicLibraryReader::read(written(file));
        QTEST(tracksText(content), "tracks");
        QTEST(playlistsText(content), "playlists");
        QCOMPARE(content.problem.isEmpty(), problem.isEmpty());
        QVERIFY2(content.problem.startsWith(problem), qPrintable(content.problem));
    }

    void everyTruncationIsTold()
    {
        const DRMusicLibraryContent whole = DRMusicLibraryReader::read(written(kWhole));
        const qsizetype end = kWhole.lastIndexOf('>');
        for (qsizetype size = 0; size <= end; ++size) {
            const DRMusicLibraryContent content = DRMusicLibraryReader::read(written(kWhole.first(size)));
            QVERIFY2(!content.problem.isEmpty(), qPrintable(QString::number(size)));
            for (const auto& [id, track] : content.tracks) {
                QCOMPARE(track, whole.tracks.at(id));
            }
            for (std::size_t index = 0; index < content.playlists.size(); ++index) {
                QCOMPARE(content.playlists.at(index), whole.playlists.at(index));
            }
        }
    }

    void recognisesGeneratedPlaylists_data()
    {
        const DRTestTable<Values, bool> row("values", "isGenerated");
        row("made by hand", {{"All Items", "<true/>"}}, false);
        row("smart", {{"Smart Info", "<data>AQ==</data>"}}, true);
        row("smart by its criteria", {{"Smart Criteria", "<data/>"}}, true);
        row("genius", {{"Genius Track ID", integer(7)}}, true);
        row("the library itself", {{"Master", "<true/>"}}, true);
        row("said not to be", {{"Master", "<false/>"}, {"Folder", "<false/>"}}, false);
        row("of the program", {{"Distinguished Kind", integer(4)}}, true);
        row("folder", {{"Folder", "<true/>"}}, true);
    }

    void recognisesGeneratedPlaylists()
    {
        QFETCH(const Values, values);
        const auto files =
            DRMusicLibrary::fromFile(written(library({}, playlist("P", "0A", {}, values)))).filesWithFileKinds(0x40);
        QCOMPARE(files.size(), 1U);
        QTEST(files.front()->metadataForKey(u"PlaylistIsAutoGenerated"_s).toBool(), "isGenerated");
    }

    void findsPersistentIDsAsNumbers_data()
    {
        const DRTestTable<QStringList, QStringList> row("ids", "names");
        row("without leading zeros", {u"a1b"_s}, {u"P"_s});
        row("as written", {u"0000000000000A1B"_s}, {u"P"_s});
        row("above 2^63", {u"fedcba9876543210"_s}, {u"Q"_s});
        row("in the order asked, once", {u"fedcba9876543210"_s, u"A1B"_s, u"0a1b"_s}, {u"Q"_s, u"P"_s});
        row("none of ours", {u"0"_s, u""_s, u"xyz"_s, u"1fedcba9876543210"_s, u"1"_s}, {});
    }

    void findsPersistentIDsAsNumbers()
    {
        QFETCH(const QStringList, ids);
        const auto library = DRMusicLibrary::fromFile(written(
            DRMusicLibraryText::library({}, playlist("P", "0000000000000A1B", {}) +
                                                playlist("Q", "FEDCBA9876543210", {}) + playlist("R", "", {}))));
        QTEST(namesOf(library.filesWithPersistentIDs(ids)), "names");
    }

    void makesRecords()
    {
        const QString song = m_folder.filePath(u"ä song.mp3"_s);
        QVERIFY(writeFile(song, "1234567"));
        QVERIFY(QFile::link(song, m_folder.filePath(u"link.mp3"_s)));
        const QByteArray folder = "file://localhost" + m_folder.path().toUtf8();
        const Values values{{"Artist", string("A/B")}, {"Album", string("C")}, {"Total Time", integer(1499)}};
        const auto library = DRMusicLibrary::fromFile(written(
            DRMusicLibraryText::library(track(7, "T", folder + "/%C3%A4%20song.mp3", values) +
                                            track(8, "L", folder + "/link.mp3") + track(9, "V", "file:///m/v.mov"),
                                        playlist("../P\n", "0A", {8, 7, 99, 7}) + playlist("Q", "0B", {7}))));

        const auto playlists = library.filesWithFileKinds(0x40);
        QCOMPARE(namesOf(playlists), (QStringList{u".._P"_s, u"Q"_s}));
        QCOMPARE(playlists[0]->metadataForKey(u"MissingReferences"_s).toLongLong(), 1LL);
        QVERIFY(playlists[0]->sourcePath().isEmpty());
        QCOMPARE(playlists[0]->filesize(), 0U);
        const auto songs = playlists[0]->metadataForKey(u"FileReferences"_s).value<DRDCFileReferences>();
        QCOMPARE(namesOf(songs), (QStringList{u"link.mp3"_s, u"ä song.mp3"_s, u"ä song.mp3"_s}));
        QCOMPARE(songs[0]->sourcePath(), song); // a link's song
        QCOMPARE(songs[1]->filesize(), 7U);
        QCOMPARE(metadataText(songs[1], DRDCFile::kArtist), u"A/B"_s);
        QCOMPARE(metadataText(songs[1], DRDCFile::kDuration), u"1499"_s);
        QCOMPARE(songs[1], songs[2]);
        QCOMPARE(playlists[1]->metadataForKey(u"FileReferences"_s).value<DRDCFileReferences>().front(), songs[1]);
        QCOMPARE(namesOf(library.filesWithFileKinds(4)), (QStringList{u"ä song.mp3"_s, u"link.mp3"_s}));

        // Records belong to whoever asked.
        songs[1]->setMetadata(u"changed"_s, QLatin1StringView(DRDCFile::kTitle));
        QCOMPARE(metadataText(library.filesWithFileKinds(4).front(), DRDCFile::kTitle), u"T"_s);
    }

    void onlyRegularReadableFilesAreValid_data()
    {
        const DRTestTable<bool> row("isValid");
        row("song.mp3", true);
        row("link to song.mp3", true);
        for (const char* name : {"missing.mp3", "folder.mp3", "pipe.mp3", "device.mp3", "dangling.mp3", "circle.mp3"}) {
            row(name, false);
        }
    }

    void onlyRegularReadableFilesAreValid()
    {
        const QTemporaryDir music;
        const auto path = [&music](const QString& name) { return music.filePath(name); };
        QVERIFY(writeFile(path(u"song.mp3"_s), "x"));
        QVERIFY(QFile::link(path(u"song.mp3"_s), path(u"link to song.mp3"_s)));
        QVERIFY(QDir(music.path()).mkdir(u"folder.mp3"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.mp3"_s)).constData(), 0600), 0);
        QVERIFY(QFile::link(u"/dev/zero"_s, path(u"device.mp3"_s)));
        QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dangling.mp3"_s)));
        QVERIFY(QFile::link(path(u"circle.mp3"_s), path(u"circle.mp3"_s)));
        const QByteArray location = "file://" + music.path().toUtf8() + '/' + QTest::currentDataTag();
        const auto library =
            DRMusicLibrary::fromFile(written(DRMusicLibraryText::library(track(1, "T", location), {})));
        QTEST(library.filesWithFileKinds(4).at(0)->isValidFile(), "isValid");
    }

    void libraryIsChosenAndReadOnce()
    {
        const DRUserFolders folders{
            .applicationSupport = {}, .data = {}, .temporary = {}, .state = {}, .music = m_folder.path()};
        QCOMPARE(DRMediaAccessController::defaultLibraryPath(folders), QString());
        QVERIFY(QDir(m_folder.path()).mkdir(u"iTunes"_s));
        for (const QString& name : {u"/iTunes/iTunes Library.xml"_s, u"/iTunes/iTunes Music Library.xml"_s}) {
            QVERIFY(writeFile(m_folder.path() + name, kWhole));
            QCOMPARE(DRMediaAccessController::defaultLibraryPath(folders), m_folder.path() + name);
        }

        QVERIFY(!DRMediaAccessController(QString()).iTunesLibrary());
        QVERIFY(!DRMediaAccessController(m_folder.filePath(u"none"_s)).iTunesLibrary()->problem().isNull());
        const DRMediaAccessController controller(DRMediaAccessController::defaultLibraryPath(folders));
        std::array<std::shared_ptr<const DRMusicLibrary>, 4> libraries;
        std::array<std::thread, 4> threads;
        for (std::size_t index = 0; index < threads.size(); ++index) {
            threads[index] = std::thread([&, index] { libraries[index] = controller.iTunesLibrary(); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(libraries[0]->trackCount(), 2);
        for (const auto& library : libraries) {
            QCOMPARE(library, libraries[0]);
        }
    }
};

QTEST_GUILESS_MAIN(TestMusicLibrary)
#include "TestMusicLibrary.moc"
