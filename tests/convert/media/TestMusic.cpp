#include "convert/media/DRMigrateAndroidMusic.h"
#include "convert/media/DRMigrateIPhoneMusic.h"
#include "platform/core/DRPropertyList.h"
#include "platform/folder_phone/DRFolderPhone.h"
#include "tests/support/DRMusicLibraryText.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestServices.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;
using namespace DRMusicLibraryText;

namespace {

/// A binary property list with the IDs 0xA1B, as 64 bits, and 0xFEDCBA9876543210, which takes 128.
QByteArray binaryPreferences()
{
    return QByteArray::fromHex("62706c6973743030"
                               "d10102"
                               "5f1010") +
           "MusicPlaylistIDs" +
           QByteArray::fromHex("a20304"
                               "130000000000000a1b"
                               "140000000000000000fedcba9876543210"
                               "080b1e212a"
                               "000000000000"
                               "0101"
                               "0000000000000005"
                               "0000000000000000"
                               "000000000000003b");
}

QByteArray preferencesWith(const QVariantList& ids)
{
    return DRPropertyList::xmlFromDictionary({{u"MusicPlaylistIDs"_s, ids}});
}

const QByteArray kGenerated = playlist("Library", "01", {1, 2, 3, 4}, {{"Master", "<true/>"}});

} // namespace

/// A library of the songs 1 to 3, the missing song 4, the video 5 and the song 6 in the cloud.
class TestMusic : public QObject {
    Q_OBJECT

private:
    std::optional<DRTestServices> m_test;

    QString path(const QString& relative) const { return m_test->root.filePath(relative); }

    void writeLibrary(const QByteArray& playlists, qsizetype cutOff = 0)
    {
        const QByteArray folder = "file://" + path(u"songs/"_s).toUtf8();
        const Values album{{"Artist", string("..")}, {"Album", string(".nomedia/x")}, {"Total Time", integer(61500)}};
        const QByteArray file =
            library(track(1, "One", folder + "1.mp3", album) + track(2, "Two", folder + "2.mp3") +
                        track(3, "Three", folder + "deep/2.mp3") + track(4, "Four", folder + "4.mp3") +
                        track(5, "Five", folder + "5.m4v") + track(6, "Six", {}, {{"Artist", string("S")}}),
                    playlists);
        QVERIFY(writeFile(m_test->musicLibrary, file.chopped(cutOff)));
    }

    void writeInfo(const QByteArray& preferences)
    {
        QVERIFY(writeFile(path(u"backup/Info.plist"_s),
                          DRPropertyList::xmlFromDictionary(
                              {{u"iTunes Files"_s, QVariantMap{{u"iTunesPrefs.plist"_s, preferences}}}})));
    }

    std::shared_ptr<DRMigrateIPhoneMusic> loaded(bool expected = true)
    {
        auto music = std::make_shared<DRMigrateIPhoneMusic>(m_test->services);
        music->setSourcePath(path(u"backup"_s));
        return music->load() == expected ? music : nullptr;
    }

    QStringList namesOf(const DRMigrateDataType& music) const
    {
        QStringList names;
        for (const DRDCFilePointer* file : recordsOf<DRDCFilePointer>(*music.entries())) {
            names.append((*file)->displayName());
        }
        return names;
    }

private Q_SLOTS:
    void init()
    {
        m_test.emplace();
        for (const QString& name : {u"1.mp3"_s, u"2.mp3"_s, u"deep/2.mp3"_s, u"5.m4v"_s}) {
            QVERIFY(writeFile(path(u"songs/"_s + name), name.toUtf8()));
        }
        writeInfo({});
    }

    void choosesPlaylists_data()
    {
        const DRTestTable<QByteArray, QByteArray, QStringList, QStringList> row("preferences", "playlists", "names",
                                                                                "warnings");

        const QByteArray two =
            kGenerated + playlist("P", "0000000000000A1B", {2, 1}) + playlist("Q", "FEDCBA9876543210", {2});
        const QStringList both{u"2.mp3"_s, u"1.mp3"_s, u"2.mp3"_s, u"P"_s, u"Q"_s};
        const auto unknown = [](int count) {
            return QStringList{
                u"Playlists of the iPhone that the music library of this computer does not hold: %1"_s.arg(count)};
        };
        row("those of the iPhone, in binary form", binaryPreferences(), two, both, {});
        row("one of them", preferencesWith({0xA1B}), two, {u"2.mp3"_s, u"1.mp3"_s, u"P"_s}, {});
        row("its order counts, and negative numbers are large ones",
            preferencesWith({static_cast<qint64>(0xFEDCBA9876543210), 0xA1B, 0xA1B}), two,
            {u"2.mp3"_s, u"2.mp3"_s, u"1.mp3"_s, u"Q"_s, u"P"_s}, {});
        row("a generated one that the iPhone took", preferencesWith({1}), two,
            {u"1.mp3"_s, u"2.mp3"_s, u"2.mp3"_s, u"Library"_s}, {});
        row("one that is gone", preferencesWith({0xA1B, 0xBAD}), two, {u"2.mp3"_s, u"1.mp3"_s, u"P"_s}, unknown(1));
        row("all are gone: the library's own", preferencesWith({0xBAD, 0xBADD}), two, both, unknown(2));
        row("no preferences", "", two, both, {});
        row("damaged preferences", "bplist00", two, both, {});
        row("wrong types", preferencesWith({u"A1B"_s, true, 2.5, QVariantMap()}), two, both, {});
        row("own ones hold nothing but music", "",
            kGenerated + playlist("films", "02", {1, 5}) + playlist("empty", "03", {}) + playlist("R", "04", {1}),
            {u"1.mp3"_s, u"R"_s}, {});
        row("what is no music is left out of a chosen one", preferencesWith({2}), playlist("films", "02", {1, 5, 99}),
            {u"1.mp3"_s, u"films"_s},
            {u"Entries of playlists that are no music, which are not moved: 1"_s,
             u"Entries of playlists that name no song of the library: 1"_s});
    }

    void choosesPlaylists()
    {
        QFETCH(const QByteArray, preferences);
        QFETCH(const QByteArray, playlists);
        QFETCH(const QStringList, names);
        writeLibrary(playlists);
        writeInfo(preferences);
        const auto music = loaded();
        QVERIFY(music);
        QCOMPARE(namesOf(*music), names);
        QTEST(music->report().warnings, "warnings");
        const qint64 playlistCount = music->mediaCountOfFileKinds(0x40);
        QCOMPARE(music->report().counts.at(u"playlists"_s), playlistCount);
        QCOMPARE(music->report().found, names.size() - playlistCount);
    }

    void namesWhatCannotBeMoved()
    {
        QList<qint64> many(250, 4);
        writeLibrary(playlist("P", "01", many + QList<qint64>{6, 1}) + playlist("gone", "02", {4, 6}));
        const auto music = loaded();
        QVERIFY(music);
        QCOMPARE(namesOf(*music), (QStringList{u"1.mp3"_s, u"P"_s}));
        const DRMigrateReport report = music->report();
        QCOMPARE(report.skipped.size(), 2U); // each song once
        QCOMPARE(report.skipped.at(0).what, u"Four"_s);
        QCOMPARE(report.skipped.at(1).what, u"S - Six"_s);
        QCOMPARE(report.skipped.at(1).why, u"it is not kept on this computer"_s);
        QCOMPARE(report.warnings, QStringList{u"Playlists without a song that can be moved: 1"_s});
    }

    void refusesWithoutMusic_data()
    {
        const DRTestTable<bool, QByteArray, QString> row("hasLibrary", "playlists", "why");
        const QString noPlaylist = u"the music library on this computer holds no playlist of music"_s;
        row("no library", false, "", u"no music library on this computer (--music FILE)"_s);
        row("no playlist", true, "", noPlaylist);
        row("generated ones only", true, kGenerated, noPlaylist);
    }

    void refusesWithoutMusic()
    {
        QFETCH(const bool, hasLibrary);
        QFETCH(const QByteArray, playlists);
        writeLibrary(playlists);
        DRTestServices without{.musicLibrary = QString()};
        DRMigrateIPhoneMusic music(hasLibrary ? m_test->services : without.services);
        QVERIFY(!music.load()); // no backup
        music.setSourcePath(path(u"backup"_s));
        QVERIFY(!music.load());
        QTEST(music.report().notAvailable, "why");
        QVERIFY(music.report().skipped.empty());
    }

    void cutOffLibraryNeverLooksWhole()
    {
        const QByteArray two = playlist("P", "01", {1}) + playlist("Q", "02", {2});
        for (const qsizetype cutOff : {15, 60, 190, 400, 1000}) {
            init();
            writeLibrary(two, cutOff);
            DRMigrateIPhoneMusic music(m_test->services);
            music.setSourcePath(path(u"backup"_s));
            const bool isLoaded = music.load();
            QCOMPARE(isLoaded, !music.entries()->empty());
            QVERIFY(music.report().notAvailable.isEmpty());
            QCOMPARE(music.report().skipped.size(), 1U);
            QCOMPARE(music.report().skipped.front().what, u"The end of the music library"_s);
        }
    }

    void playlistsNameTheSongsWhereTheyLanded()
    {
        writeLibrary(playlist("P", "01", {3, 2, 1}) + playlist("../P", "02", {2, 2}) + playlist("P", "03", {1}));
        const QString phoneFolder = path(u"phone"_s);
        QVERIFY(writeFile(phoneFolder + u"/storage/Music/2.mp3"_s, "the phone's own"));
        QVERIFY(writeFile(phoneFolder + u"/storage/Music/2 (2).mp3"_s, "2.mp3"));
        m_test->deviceController.setActiveDevice(
            DRFolderPhone::open(phoneFolder, m_test->queue, m_test->notifications));
        const auto source = loaded();
        QVERIFY(source);
        const auto music = std::make_shared<DRMigrateAndroidMusic>(m_test->services);
        QVERIFY(music->mergeDataFrom(*source));
        std::size_t failed = 99;
        music->transferFilesWithTarget([&failed](const DRDCFileFailures& failures) { failed = failures->size(); });
        m_test->queue.runAll();

        QCOMPARE(failed, 0U);
        QCOMPARE(music->report().written, 6);
        QCOMPARE(music->report().counts.at(u"playlists"_s), 3);
        const QString folder = phoneFolder + u"/storage/Music/"_s;
        QCOMPARE(readFile(folder + u"2.mp3"_s), "the phone's own"_ba);
        const QByteArray one = "#EXTINF:62,.. - One\n_./_nomedia_x/1.mp3\n";
        QCOMPARE(readFile(folder + u"P.m3u"_s),
                 "#EXTM3U\n#EXTINF:62,Three\n2 (3).mp3\n#EXTINF:62,Two\n2 (2).mp3\n"_ba + one);
        QCOMPARE(readFile(folder + u"_._P.m3u"_s),
                 "#EXTM3U\n#EXTINF:62,Two\n2 (2).mp3\n#EXTINF:62,Two\n2 (2).mp3\n"_ba);
        QCOMPARE(readFile(folder + u"P (2).m3u"_s), "#EXTM3U\n"_ba + one);
        QCOMPARE(readFile(folder + u"_./_nomedia_x/1.mp3"_s), "1.mp3"_ba);
        QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 6);
    }
};

QTEST_GUILESS_MAIN(TestMusic)
#include "TestMusic.moc"
