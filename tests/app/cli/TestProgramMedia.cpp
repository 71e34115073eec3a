#include "platform/sqlite/DRDatabase.h"
#include "tests/app/cli/DRPacketCheck.h"
#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

#include <QJsonArray>
#include <QSet>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kNewerRoot = u"CameraRollDomain-Media/"_s;
const QString kOlderRoot = u"MediaDomain-Media/"_s;
const QString kDatabase = u"PhotoData/Photos.sqlite"_s;
const QString kLibrary = u"music/iTunes Music Library.xml"_s;
const QString kSong = u"Möwenchor Förde/Ebbe & Flut/01 Ankern.m4a"_s;

/// Changes a sandbox before the transfer. Answers whether it could.
using Change = bool (*)(const DRProgramSandbox& sandbox);

DRPacketCheck checkOf(const DRProgramSandbox& sandbox)
{
    return {sandbox, QStringLiteral(CHECK_MEDIA)};
}

bool writePhone(const DRProgramSandbox& sandbox, const QByteArray& json)
{
    sandbox.write(u"phone/phone.json"_s, json);
    return true;
}

/// As a system 4 keeps its photos: another database, another domain.
bool makeOlderLibrary(const DRProgramSandbox& sandbox)
{
    const DRPacketCheck check = checkOf(sandbox);
    const QStringList names{u"DCIM/100APPLE/IMG_0001.JPG"_s, u"DCIM/101APPLE/IMG_0001.JPG"_s,
                            u"DCIM/100APPLE/IMG_0011.MOV"_s};
    const bool areMoved = std::all_of(names.begin(), names.end(), [&check](const QString& name) {
        return QFile::rename(check.stored(kNewerRoot + name), check.stored(kOlderRoot + name));
    });
    auto database = DRDatabase::open(check.stored(kOlderRoot + kDatabase), DRDatabase::Profile::Create);
    return areMoved && QFile::remove(check.stored(kNewerRoot + kDatabase)) && database &&
           database->executeScript(
               u"CREATE TABLE Photo (primaryKey INTEGER PRIMARY KEY, directory TEXT, filename TEXT, title TEXT);"
               "INSERT INTO Photo VALUES (1, 'DCIM/101APPLE', 'IMG_0001.JPG', NULL),"
               " (2, 'DCIM/100APPLE', 'IMG_0011.MOV', NULL), (3, 'DCIM/100APPLE', 'IMG_0001.JPG', 'Hej');"
               "CREATE TABLE PhotoAlbum (primaryKey INTEGER PRIMARY KEY, kind INTEGER, keyPhotoKey INTEGER, title "
               "TEXT);"
               "INSERT INTO PhotoAlbum VALUES (1, 1000, 0, 'saved photos');"
               "CREATE TABLE PhotoAlbumToPhotoJoin (primaryKey INTEGER PRIMARY KEY, left INTEGER, right INTEGER);"
               "INSERT INTO PhotoAlbumToPhotoJoin VALUES (1, 1, 3), (2, 1, 1), (3, 1, 2);"_s);
}

bool takeNames(const DRProgramSandbox& sandbox)
{
    const DRPacketCheck check = checkOf(sandbox);
    sandbox.write(u"phone/storage/TarvexTransfer/Media/IMG_0004.JPG"_s,
                  readFile(check.stored(kNewerRoot + u"DCIM/100APPLE/IMG_0004.JPG"_s)));
    sandbox.write(u"phone/storage/TarvexTransfer/Media/IMG_0001.JPG"_s, "another");
    sandbox.write(u"phone/storage/TarvexTransfer/Media/IMG_0001 (2).JPG"_s, "and another");
    sandbox.write(u"phone/storage/TarvexTransfer/Recordings/Besprechung \u2013 Zo\u00EB.m4a"_s, "another");
    sandbox.write(u"phone/storage/Music/"_s + kSong, "another");
    sandbox.write(u"phone/storage/Music/Roadtrip \U0001F697 Nord_S\u00FCd.m3u"_s, "#EXTM3U\n");
    return true;
}

bool loseFiles(const DRProgramSandbox& sandbox)
{
    const DRPacketCheck check = checkOf(sandbox);
    const QString memo = kOlderRoot + u"Recordings/Besprechung \u2013 Zo\u00EB.m4a"_s;
    return QFile::remove(check.stored(kNewerRoot + u"DCIM/100APPLE/IMG_0012.JPG"_s)) &&
           QFile::remove(check.stored(kNewerRoot + u"DCIM/100APPLE/IMG_0033.MP4"_s)) &&
           QFile::remove(check.stored(memo)) && QFile::remove(sandbox.path(u"music/Music/"_s + kSong));
}

/// Gives every file below the folder a time of change of its own.
bool age(const QString& folder)
{
    QDateTime moment = QDateTime::fromMSecsSinceEpoch(1'388'534'400'123, Qt::UTC);
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        moment = moment.addSecs(4'321);
        if (!file.open(QIODevice::ReadWrite) || !file.setFileTime(moment, QFileDevice::FileModificationTime)) {
            return false;
        }
    }
    return true;
}

} // namespace

Q_DECLARE_METATYPE(Change)

/// Photos, videos, voice memos and music through the program, from the sample's backup and music library to the storage of
/// its phone.
class TestProgramMedia : public DRProgramTest {
    Q_OBJECT

private:
    std::map<QString, QString> m_music; ///< what the music folder must still be

    /// Moves the sample's music into the sandbox, and makes the times of change tell the files apart.
    [[nodiscard]] bool prepare(Change change)
    {
        m_sandbox->copyTree(samplePath(u"music"_s), u"music"_s);
        const auto url = [](const QString& path) { return QUrl::toPercentEncoding(path, "/"); };
        m_sandbox->write(
            kLibrary,
            readFile(samplePath(kLibrary)).replace(url(samplePath(u"music"_s)), url(m_sandbox->path(u"music"_s))));
        if (!change(*m_sandbox) || !age(m_sandbox->path(u"backups"_s)) || !age(m_sandbox->path(u"music"_s))) {
            return false;
        }
        m_sandbox->copyTree(m_sandbox->path(u"phone/storage"_s), u"before"_s);
        m_source = m_sandbox->snapshot(u"backups"_s);
        m_music = m_sandbox->snapshot(u"music"_s);
        return true;
    }

    [[nodiscard]] DRProgramSandbox::Ended runWithMusic(const QStringList& arguments) const
    {
        return run(arguments + QStringList{u"--json"_s, u"--music"_s, m_sandbox->path(kLibrary)});
    }

    /// What an independent reader misses or did not want on the phone, whose storage was a copy of `before`.
    [[nodiscard]] QByteArray complaints(const QString& before = u"before"_s) const
    {
        const DRPacketCheck check = checkOf(*m_sandbox);
        return check.complaints({u"moved"_s, check.backup(), m_sandbox->path(kLibrary), m_sandbox->path(u"phone"_s),
                                 m_sandbox->path(before)});
    }

    static QSet<QString> namesOfSkipped(const QJsonObject& summary)
    {
        QSet<QString> names;
        for (const QJsonValue kind : summary[u"kinds"].toObject()) {
            for (const QJsonValue item : kind[u"skipped"].toArray()) {
                names.insert(item[u"what"].toString());
            }
        }
        return names;
    }

private Q_SLOTS:
    void everythingArrives_data()
    {
        const DRTestTable<Change, int, QStringList> row("change", "code", "skipped");
        const Change none = [](const DRProgramSandbox&) { return true; };
        const Change oldPhone = [](const DRProgramSandbox& sandbox) {
            return writePhone(sandbox, R"({"androidBaseVersion": 2})");
        };
        row("the sample", none, 0, {});
        row("on a phone that stumbles over notes in videos", oldPhone, 0, {});
        row("from the older photo library", Change(makeOlderLibrary), 0, {});
        row("beside other files of the same names", Change(takeNames), 0, {});
        row("but what is not there", Change(loseFiles), 20,
            {u"IMG_0012.JPG"_s, u"IMG_0033.MP4"_s, u"Besprechung \u2013 Zo\u00EB.m4a"_s,
             u"M\u00F6wenchor F\u00F6rde - Ankern"_s});
    }

    void everythingArrives()
    {
        QFETCH(const Change, change);
        QFETCH(const int, code);
        QFETCH(const QStringList, skipped);
        QVERIFY(prepare(change));
        QVERIFY(!complaints().isEmpty()); // the check notices when nothing arrived

        const auto inspected = runWithMusic({u"inspect"_s});
        m_sandbox->write(u"inspected.json"_s, inspected.out);
        const DRPacketCheck check = checkOf(*m_sandbox);
        const QByteArray miscounted = check.complaints(
            {u"inspected"_s, check.backup(), m_sandbox->path(kLibrary), m_sandbox->path(u"inspected.json"_s)});
        QVERIFY2(miscounted.isEmpty(), miscounted.constData());

        const auto ended = runWithMusic({u"transfer"_s, u"--yes"_s});
        QVERIFY2(ended.code == code, ended.out.constData());
        QCOMPARE(namesOfSkipped(ended.lines().last()), QSet<QString>(skipped.begin(), skipped.end()));
        const QByteArray found = complaints();
        QVERIFY2(found.isEmpty(), found.constData());
        QVERIFY(m_sandbox->snapshot(u"music"_s) == m_music);
    }

    void whatIsThereIsNotCopiedAgain()
    {
        QVERIFY(prepare([](const DRProgramSandbox&) { return true; }));
        const QStringList arguments{u"transfer"_s, u"--yes"_s, u"--only"_s, u"photos,videos,music,voicememos"_s};
        QCOMPARE(runWithMusic(arguments).code, 0);
        m_sandbox->copyTree(m_sandbox->path(u"phone/storage"_s), u"after"_s);
        QCOMPARE(runWithMusic(arguments + QStringList{u"--again"_s}).code, 0);
        const QByteArray found = complaints(u"after"_s);
        QVERIFY2(found.isEmpty(), found.constData());
    }

    void onlyWhatWasChosenIsCopiedAndMissed_data()
    {
        const DRTestTable<QString, QString> row("kind", "missing");
        row("photos", u"photos"_s, u"IMG_0012.JPG"_s);
        row("videos", u"videos"_s, u"IMG_0033.MP4"_s);
    }

    void onlyWhatWasChosenIsCopiedAndMissed()
    {
        QFETCH(const QString, kind);
        QFETCH(const QString, missing);
        QDir(m_sandbox->path(u"phone/storage"_s)).removeRecursively();
        QVERIFY(prepare(loseFiles));
        const auto ended = runWithMusic({u"transfer"_s, u"--yes"_s, u"--only"_s, kind});
        const QJsonObject summary = ended.lines().last();
        QCOMPARE(ended.code, 20);
        QCOMPARE(summary[u"code"].toInt(), ended.code);
        QCOMPARE(namesOfSkipped(summary), QSet<QString>{missing});
        const QStringList names = QDir(m_sandbox->path(u"phone/storage/TarvexTransfer/Media"_s)).entryList(QDir::Files);
        QVERIFY(!names.isEmpty());
        QCOMPARE(summary[u"kinds"][u"images"][u"written"].toInt(), names.size());
        for (const QString& name : names) {
            const bool isVideo = QStringList{u"MOV"_s, u"MP4"_s}.contains(name.section(u'.', -1));
            QVERIFY2(isVideo == (kind == u"videos"), qPrintable(name));
        }
    }

    /// Where nothing could be written nothing counts as moved, and the next run is no repeat.
    void failedCopyIsNoTransfer()
    {
        const QString folder = u"phone/storage/TarvexTransfer"_s;
        QDir(m_sandbox->path(u"phone/storage"_s)).removeRecursively();
        m_sandbox->write(folder, "in the way");
        QVERIFY(prepare([](const DRProgramSandbox&) { return true; }));
        const QStringList arguments{u"transfer"_s, u"--yes"_s, u"--only"_s, u"photos,voicememos"_s};
        const auto failed = runWithMusic(arguments);
        QCOMPARE(failed.code, 17);
        const QJsonValue kinds = failed.lines().last()[u"kinds"];
        QCOMPARE(kinds[u"images"][u"written"].toInt(), 0);
        QCOMPARE(kinds[u"voicememos"][u"found"].toInt(), 8);
        QCOMPARE(kinds[u"voicememos"][u"skipped"].toArray().size(), 1);

        QVERIFY(QFile::remove(m_sandbox->path(folder)));
        const auto moved = runWithMusic(arguments);
        QCOMPARE(moved.code, 0);
        QCOMPARE(moved.lines().last()[u"kinds"][u"voicememos"][u"written"].toInt(), 8);
    }

    void phoneThatIsTooSmallStaysAsItIs()
    {
        QVERIFY(prepare([](const DRProgramSandbox& sandbox) {
            return writePhone(sandbox, R"({"memoryUsableCapacity": 600000})");
        }));
        const auto phone = m_sandbox->snapshot(u"phone"_s);
        const auto ended = runWithMusic({u"transfer"_s, u"--yes"_s, u"--only"_s, u"photos,videos,music,voicememos"_s});
        QCOMPARE(ended.code, 11);
        QVERIFY(m_sandbox->snapshot(u"phone"_s) == phone);
    }
};

QTEST_GUILESS_MAIN(TestProgramMedia)
#include "TestProgramMedia.moc"
