#include "platform/sqlite/DRDatabase.h"
#include "tests/app/cli/DRProgramTest.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

const QString kDomain = u"CameraRollDomain-Media/"_s;

} // namespace

/// Transfers of photos, videos and voice memos with the real program.
class TestProgramPhotos : public DRProgramTest {
    Q_OBJECT

private:
    /// Where the sample's backup holds a file, relative to the sandbox.
    [[nodiscard]] QString backedUp(const QString& domainPath) const
    {
        const QStringList backups = QDir(m_sandbox->path(u"backups"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return u"backups/"_s + backups.front() + u'/' + sha1HexString(domainPath);
    }

    [[nodiscard]] bool makeDatabase(const QString& domainPath, const QString& sql) const
    {
        const QString path = m_sandbox->path(backedUp(domainPath));
        QFile::remove(path);
        QFile::remove(m_sandbox->path(backedUp(domainPath + u"-wal"_s)));
        auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
        return database && database->executeScript(sql);
    }

    /// Two photos of one name, a video, and of each kind one whose file is missing.
    [[nodiscard]] bool makeLibrary() const
    {
        m_sandbox->write(backedUp(kDomain + u"DCIM/100APPLE/IMG_0001.JPG"_s), "one");
        m_sandbox->write(backedUp(kDomain + u"DCIM/101APPLE/IMG_0001.JPG"_s), "two");
        m_sandbox->write(backedUp(kDomain + u"DCIM/100APPLE/IMG_0002.MOV"_s), "film");
        return makeDatabase(kDomain + u"PhotoData/Photos.sqlite"_s,
                            u"CREATE TABLE ZGENERICASSET(Z_PK INTEGER PRIMARY KEY, ZDIRECTORY, ZFILENAME);"
                            "INSERT INTO ZGENERICASSET VALUES (1, 'DCIM/100APPLE', 'IMG_0001.JPG'),"
                            " (2, 'DCIM/101APPLE', 'IMG_0001.JPG'), (3, 'DCIM/100APPLE', 'IMG_0002.MOV'),"
                            " (4, 'DCIM/100APPLE', 'gone.jpg'), (5, 'DCIM/100APPLE', 'gone.mov');"
                            "CREATE TABLE ZGENERICALBUM(Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER);"
                            "INSERT INTO ZGENERICALBUM VALUES (1, 1000);"
                            "CREATE TABLE Z_11ASSETS(Z_11ALBUMS INTEGER, Z_17ASSETS INTEGER);"
                            "INSERT INTO Z_11ASSETS VALUES (1, 1), (1, 2), (1, 3), (1, 4), (1, 5);"_s);
    }

    [[nodiscard]] QByteArray contentOnPhone(const QString& path) const
    {
        QFile file(m_sandbox->path(u"phone/storage/TarvexTransfer/"_s + path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

private Q_SLOTS:
    void onlyWhatWasChosenIsCopiedAndMissed_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("written");
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("photos") << u"photos"_s << 2 << u"gone.jpg"_s
                                << QStringList{u"IMG_0001 (2).JPG"_s, u"IMG_0001.JPG"_s};
        QTest::newRow("videos") << u"videos"_s << 1 << u"gone.mov"_s << QStringList{u"IMG_0002.MOV"_s};
    }

    void onlyWhatWasChosenIsCopiedAndMissed()
    {
        QFETCH(QString, kind);
        QDir(m_sandbox->path(u"phone/storage"_s)).removeRecursively();
        QVERIFY(makeLibrary());
        m_source = m_sandbox->snapshot(u"backups"_s);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--json"_s, u"--only"_s, kind});
        const QJsonObject summary = ended.lines().last();
        QCOMPARE(summary[u"code"].toInt(), ended.code);
        const QJsonValue images = summary[u"kinds"][u"images"];
        QTEST(images[u"written"].toInt(), "written");
        const QJsonArray skipped = images[u"skipped"].toArray();
        QCOMPARE(skipped.size(), 1);
        QTEST(skipped.at(0)[u"what"].toString(), "missing");
        QTEST(QDir(m_sandbox->path(u"phone/storage/TarvexTransfer/Media"_s)).entryList(QDir::Files, QDir::Name),
              "names");
        QVERIFY(kind != u"photos" || contentOnPhone(u"Media/IMG_0001 (2).JPG"_s) == "two");
    }

    /// Where nothing could be written nothing counts as moved, and the next run is no repeat.
    void failedCopyIsNoTransfer()
    {
        const QString folder = u"phone/storage/TarvexTransfer"_s;
        QDir(m_sandbox->path(u"phone/storage"_s)).removeRecursively();
        m_sandbox->write(folder, "in the way");
        QVERIFY(makeLibrary());
        m_source = m_sandbox->snapshot(u"backups"_s);
        const QStringList arguments{u"transfer"_s, u"--yes"_s, u"--json"_s, u"--only"_s, u"photos,voicememos"_s};
        const auto failed = run(arguments);
        QCOMPARE(failed.code, 17);
        const QJsonValue kinds = failed.lines().last()[u"kinds"];
        QCOMPARE(kinds[u"images"][u"written"].toInt(), 0);
        QCOMPARE(kinds[u"voicememos"][u"found"].toInt(), 8);
        QCOMPARE(kinds[u"voicememos"][u"skipped"].toArray().size(), 1);
        QVERIFY(QFile::remove(m_sandbox->path(folder)));
        QCOMPARE(run(arguments).code, 20); // for the photo whose file is missing
        QCOMPARE(contentOnPhone(u"Media/IMG_0001.JPG"_s), QByteArray("one"));
    }
};

QTEST_GUILESS_MAIN(TestProgramPhotos)
#include "TestProgramPhotos.moc"
