#include "platform/core/DRUserFolders.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "platform/media_library/DRMusicLibrary.h"
#include "platform/media_library/DRMusicLibraryReader.h"
#include "platform/media_library/DRMusicLocation.h"
#include "tests/support/DRMusicLibraryText.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace DRMusicLibraryText;

namespace {

const QByteArray kTwoTracks = track(1, "One", "file:///m/1.mp3") + track(2, "Two", "file:///m/2.mp3");
const QByteArray kWhole = library(kTwoTracks, playlist("P", "0A", {1, 2}) + playlist("Q", "0B", {2}));
const QString kEnds = u"it ends in its middle"_s;

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

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
        write(path, bytes);
        return path;
    }

private Q_SLOTS:
    void readsLocations_data();
    void readsLocations();
    void tellsKindsOfTracks_data();
    void tellsKindsOfTracks();
    void readsHostileFiles_data();
    void readsHostileFiles();
    void everyTruncationIsTold();
    void recognisesGeneratedPlaylists_data();
    void recognisesGeneratedPlaylists();
    void findsPersistentIDsAsNumbers_data();
    void findsPersistentIDsAsNumbers();
    void makesRecords();
    void onlyRegularReadableFilesAreValid_data();
    void onlyRegularReadableFilesAreValid();
    void libraryIsChosenAndReadOnce();
};

void TestMusicLibrary::readsLocations_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("file:///m/a.mp3") << u"/m/a.mp3"_s;
    QTest::newRow("file://localhost/m/a%20b%23%3F.mp3") << u"/m/a b#?.mp3"_s;
    QTest::newRow("FILE://LocalHost/m/%C3%A4+.mp3") << u"/m/ä+.mp3"_s;
    QTest::newRow("file://localhost/m/old.mp3/") << u"/m/old.mp3"_s;
    for (const char* none :
         {"", "file://", "file:///", "file://otherhost/m/a.mp3", "http://example.com/a.mp3", "/m/a.mp3",
          "file://localhost/C:/Music/a.mp3", "file:///C%3A/a.mp3", "file:///m/a%00.mp3"}) {
        QTest::newRow(*none == '\0' ? "none" : none) << QString();
    }
}

void TestMusicLibrary::readsLocations()
{
    const QString location = QString::fromUtf8(QTest::currentDataTag());
    QTEST(DRMusicLocation::localPath(location), "path");
}

void TestMusicLibrary::tellsKindsOfTracks_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::addColumn<QByteArray>("flag");
    QTest::addColumn<quint32>("kind");
    QTest::newRow("song") << "file:///m/a.MP3"_ba
                          << ""_ba << quint32{4};
    QTest::newRow("song that is missing") << ""_ba
                                          << ""_ba << quint32{4};
    QTest::newRow("private file called a song") << "file:///home/a/.ssh/id_rsa"_ba
                                                << ""_ba << quint32{0};
    QTest::newRow("extension of a folder") << "file:///m/x.mp3/id_rsa"_ba
                                           << ""_ba << quint32{0};
    QTest::newRow("podcast") << "file:///m/a.mp3"_ba
                             << "Podcast"_ba << quint32{0};
    QTest::newRow("video") << "file:///m/a.m4v"_ba
                           << ""_ba << quint32{8};
    QTest::newRow("video in a song's file") << "file:///m/a.m4a"_ba
                                            << "Has Video"_ba << quint32{8};
    QTest::newRow("never a playlist") << "file:///m/a.m3u"_ba
                                      << ""_ba << quint32{0};
}

void TestMusicLibrary::tellsKindsOfTracks()
{
    QFETCH(const QByteArray, location);
    QFETCH(const QByteArray, flag);
    const Values values = flag.isEmpty() ? Values{} : Values{{flag, "<true/>"}};
    const auto content = DRMusicLibraryReader::read(written(library(track(1, "T", location, values), {})));
    QTEST(content.tracks.at(1).fileKind, "kind");
}

void TestMusicLibrary::readsHostileFiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("tracks");
    QTest::addColumn<QString>("playlists");
    QTest::addColumn<QString>("problem"); ///< empty: none

    const QString noList = u"it is no property list"_s;
    const QString both = u"1:One|2:Two"_s;
    QTest::newRow("whole") << kWhole << both << u"P:1,2|Q:2"_s << QString();
    QTest::newRow("empty file") << ""_ba << QString() << QString() << kEnds;
    QTest::newRow("binary") << "bplist00\xD0"_ba << QString() << QString() << u"it is damaged at line 1"_s;
    QTest::newRow("other XML") << "<html><body/></html>"_ba << QString() << QString() << noList;
    QTest::newRow("an array") << kHead + "<array/></plist>" << QString() << QString() << noList;
    QTest::newRow("nothing in it") << kHead + "<dict/></plist>" << QString() << QString() << QString();
    QTest::newRow("tracks only") << kHead + "<dict><key>Tracks</key><dict>" + kTwoTracks + "</dict></dict></plist>"
                                 << both << QString() << QString();
    QTest::newRow("wrong types")
        << kHead + dictionary({{"Playlists", "<dict><key>a</key><array/></dict>"}, {"Tracks", integer(1)}}) + "</plist>"
        << QString() << QString() << QString();
    QTest::newRow("wrong types within")
        << library(track(1, "T", {}), playlist("P", "", {1})).replace("<string>T</string>", "<array><true/></array>")
        << u"1:"_s << u"P:1"_s << QString();
    QTest::newRow("a key without a value")
        << kHead + "<dict><key>Tracks</key><dict>" + kTwoTracks + "<key>3</key></dict></dict></plist>" << both
        << QString() << noList;
    QTest::newRow("markup in a text") << library(track(1, "<b>x</b>", {}), {}) << QString() << QString() << noList;
    QTest::newRow("not well formed") << QByteArray(kWhole).replace("<key>Playlists</key>", "<key>Playlists<key>")
                                     << both << QString() << noList;
    QTest::newRow("invalid UTF-8") << QByteArray(kWhole).replace("Two", "T\xFFo") << QString() << QString()
                                   << u"it is damaged"_s; // which is noticed when a chunk is decoded
    QTest::newRow("entities of XML") << library(track(1, "R&amp;B &#60;&#x1F3B5;", {}), {}) << u"1:R&B <🎵"_s
                                     << QString() << QString();
    QTest::newRow("unknown entity") << QByteArray(kWhole).replace("Two", "&two;") << u"1:One"_s << QString() << noList;
    QTest::newRow("entity of its own")
        << QByteArray(kWhole).replace("1.0.dtd\"", R"(1.0.dtd" [<!ENTITY two "lol">])").replace("Two", "&two;")
        << QString() << QString() << u"it defines entities of its own"_s;
    QTest::newRow("entity that is a file")
        << QByteArray(kWhole).replace("1.0.dtd\"", R"(1.0.dtd" [<!ENTITY two SYSTEM "file:///etc/passwd">])")
        << QString() << QString() << u"it defines entities of its own"_s;
    QTest::newRow("nested deeply") << library(kTwoTracks, QByteArray("<array>").repeated(100'000)) << both << QString()
                                   << u"it is nested too deeply"_s;
    QTest::newRow("endless text") << library(kTwoTracks + track(3, QByteArray(5'000'000, 'x'), {}),
                                             playlist("P", "0A", {1}))
                                  << both << QString() << u"it holds a value that is too long"_s;
    QTest::newRow("something behind it") << kWhole + "<plist/>" << both << u"P:1,2|Q:2"_s << u"it is damaged"_s;
}

void TestMusicLibrary::readsHostileFiles()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QString, problem);
    const DRMusicLibraryContent content = DRMusicLibraryReader::read(written(file));
    QTEST(tracksText(content), "tracks");
    QTEST(playlistsText(content), "playlists");
    QCOMPARE(content.problem.isEmpty(), problem.isEmpty());
    QVERIFY2(content.problem.startsWith(problem), qPrintable(content.problem));
}

void TestMusicLibrary::everyTruncationIsTold()
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

void TestMusicLibrary::recognisesGeneratedPlaylists_data()
{
    QTest::addColumn<Values>("values");
    QTest::addColumn<bool>("isGenerated");
    QTest::newRow("made by hand") << Values{{"All Items", "<true/>"}} << false;
    QTest::newRow("smart") << Values{{"Smart Info", "<data>AQ==</data>"}} << true;
    QTest::newRow("smart by its criteria") << Values{{"Smart Criteria", "<data/>"}} << true;
    QTest::newRow("genius") << Values{{"Genius Track ID", integer(7)}} << true;
    QTest::newRow("the library itself") << Values{{"Master", "<true/>"}} << true;
    QTest::newRow("said not to be") << Values{{"Master", "<false/>"}, {"Folder", "<false/>"}} << false;
    QTest::newRow("of the program") << Values{{"Distinguished Kind", integer(4)}} << true;
    QTest::newRow("folder") << Values{{"Folder", "<true/>"}} << true;
}

void TestMusicLibrary::recognisesGeneratedPlaylists()
{
    QFETCH(const Values, values);
    const auto files =
        DRMusicLibrary::fromFile(written(library({}, playlist("P", "0A", {}, values)))).filesWithFileKinds(0x40);
    QCOMPARE(files.size(), 1U);
    QTEST(files.front()->metadataForKey(u"PlaylistIsAutoGenerated"_s).toBool(), "isGenerated");
}

void TestMusicLibrary::findsPersistentIDsAsNumbers_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("without leading zeros") << QStringList{u"a1b"_s} << QStringList{u"P"_s};
    QTest::newRow("as written") << QStringList{u"0000000000000A1B"_s} << QStringList{u"P"_s};
    QTest::newRow("above 2^63") << QStringList{u"fedcba9876543210"_s} << QStringList{u"Q"_s};
    QTest::newRow("in the order asked, once")
        << QStringList{u"fedcba9876543210"_s, u"A1B"_s, u"0a1b"_s} << QStringList{u"Q"_s, u"P"_s};
    QTest::newRow("none of ours") << QStringList{u"0"_s, u""_s, u"xyz"_s, u"1fedcba9876543210"_s, u"1"_s}
                                  << QStringList{};
}

void TestMusicLibrary::findsPersistentIDsAsNumbers()
{
    QFETCH(const QStringList, ids);
    const auto library = DRMusicLibrary::fromFile(written(DRMusicLibraryText::library(
        {}, playlist("P", "0000000000000A1B", {}) + playlist("Q", "FEDCBA9876543210", {}) + playlist("R", "", {}))));
    QTEST(namesOf(library.filesWithPersistentIDs(ids)), "names");
}

void TestMusicLibrary::makesRecords()
{
    const QString song = m_folder.filePath(u"ä song.mp3"_s);
    write(song, "1234567");
    QVERIFY(QFile::link(song, m_folder.filePath(u"link.mp3"_s)));
    const QByteArray folder = "file://localhost" + m_folder.path().toUtf8();
    const Values values{{"Artist", string("A/B")}, {"Album", string("C")}, {"Total Time", integer(1499)}};
    const auto library = DRMusicLibrary::fromFile(
        written(DRMusicLibraryText::library(track(7, "T", folder + "/%C3%A4%20song.mp3", values) +
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

void TestMusicLibrary::onlyRegularReadableFilesAreValid_data()
{
    QTest::addColumn<bool>("isValid");
    QTest::newRow("song.mp3") << true;
    QTest::newRow("link to song.mp3") << true;
    for (const char* name : {"missing.mp3", "folder.mp3", "pipe.mp3", "device.mp3", "dangling.mp3", "circle.mp3"}) {
        QTest::newRow(name) << false;
    }
}

void TestMusicLibrary::onlyRegularReadableFilesAreValid()
{
    const QTemporaryDir music;
    const auto path = [&music](const QString& name) { return music.filePath(name); };
    write(path(u"song.mp3"_s), "x");
    QVERIFY(QFile::link(path(u"song.mp3"_s), path(u"link to song.mp3"_s)));
    QVERIFY(QDir(music.path()).mkdir(u"folder.mp3"_s));
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe.mp3"_s)).constData(), 0600), 0);
    QVERIFY(QFile::link(u"/dev/zero"_s, path(u"device.mp3"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dangling.mp3"_s)));
    QVERIFY(QFile::link(path(u"circle.mp3"_s), path(u"circle.mp3"_s)));
    const QByteArray location = "file://" + music.path().toUtf8() + '/' + QTest::currentDataTag();
    const auto library = DRMusicLibrary::fromFile(written(DRMusicLibraryText::library(track(1, "T", location), {})));
    QTEST(library.filesWithFileKinds(4).at(0)->isValidFile(), "isValid");
}

void TestMusicLibrary::libraryIsChosenAndReadOnce()
{
    const DRUserFolders folders{
        .applicationSupport = {}, .data = {}, .temporary = {}, .state = {}, .music = m_folder.path()};
    QCOMPARE(DRMediaAccessController::defaultLibraryPath(folders), QString());
    QVERIFY(QDir(m_folder.path()).mkdir(u"iTunes"_s));
    for (const QString& name : {u"/iTunes/iTunes Library.xml"_s, u"/iTunes/iTunes Music Library.xml"_s}) {
        write(m_folder.path() + name, kWhole);
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

QTEST_GUILESS_MAIN(TestMusicLibrary)
#include "TestMusicLibrary.moc"
