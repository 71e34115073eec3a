#include "convert/media/DRAlbumJoin.h"
#include "convert/media/DRMigrateIPhonePhotos.h"
#include "tests/convert/media/DRMediaFixture.h"
#include "tests/support/DRTestTable.h"

#include <random>

using namespace Qt::StringLiterals;

namespace {

const QString kNewerDatabase = u"CameraRollDomain-Media/PhotoData/Photos.sqlite"_s;
const QString kOlderDatabase = u"MediaDomain-Media/PhotoData/Photos.sqlite"_s;
const QString kCameraRoll = u"CameraRollDomain-Media/DCIM/100APPLE/"_s;

const QString kAssets = u"CREATE TABLE ZGENERICASSET(Z_PK INTEGER PRIMARY KEY, ZDIRECTORY, ZFILENAME, "
                        "ZUNIFORMTYPEIDENTIFIER, ZTITLE);"_s;
const QString kAlbums = u"CREATE TABLE ZGENERICALBUM(Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, ZKEYASSET INTEGER, "
                        "ZTITLE);"_s;
const QString kJoin = u"CREATE TABLE Z_11ASSETS(Z_11ALBUMS INTEGER, Z_17ASSETS INTEGER, Z_FOK_17ASSETS INTEGER, "
                      "PRIMARY KEY(Z_11ALBUMS, Z_17ASSETS));"
                      "CREATE INDEX i ON Z_11ASSETS(Z_11ALBUMS, Z_FOK_17ASSETS, Z_17ASSETS);"_s;
const QString kNewer = kAssets + kAlbums + kJoin;
const QString kOlder =
    u"CREATE TABLE Photo(primaryKey INTEGER PRIMARY KEY, directory, filename, title);"
    "CREATE TABLE PhotoAlbum(primaryKey INTEGER PRIMARY KEY, kind INTEGER, keyPhotoKey INTEGER, title);"
    "CREATE TABLE PhotoAlbumToPhotoJoin(primaryKey INTEGER PRIMARY KEY, \"left\" INTEGER, \"right\" INTEGER);"_s;

/// Rows of the newer layout.
QString asset(int key, const QString& filename, const QString& directory = u"DCIM/100APPLE"_s)
{
    return u"INSERT INTO ZGENERICASSET VALUES (%1, '%2', '%3', 'public.jpeg', NULL);"_s.arg(key).arg(directory,
                                                                                                     filename);
}

QString album(int key, int kind, const QString& title = u"NULL"_s)
{
    return u"INSERT INTO ZGENERICALBUM VALUES (%1, %2, 7, %3);"_s.arg(key).arg(kind).arg(title);
}

QString member(int album, int asset)
{
    return u"INSERT INTO Z_11ASSETS VALUES (%1, %2, %2);"_s.arg(album).arg(asset);
}

QString olderLibrary(const QString& filename)
{
    return kOlder + u"INSERT INTO Photo VALUES (4, 'DCIM/999APPLE', '%1', NULL);"
                    "INSERT INTO PhotoAlbum VALUES (1, 1000, 4, NULL);"
                    "INSERT INTO PhotoAlbumToPhotoJoin VALUES (1, 1, 4);"_s.arg(filename);
}

constexpr auto kNotInBackup = "its file is not in the backup, or cannot be read"_L1;
constexpr auto kUnknownName = "its name does not tell a photo or video that this version knows"_L1;

/// Rows of a join table, in which some values are not the integers that they should be.
QString randomMembers(quint32 seed)
{
    static const QStringList kValues{u"NULL"_s, u"3.0"_s,   u"3.5"_s,    u"'3'"_s,
                                     u"'03'"_s, u"' 3'"_s,  u"x'33'"_s,  u"9223372036854775807"_s,
                                     u"-4"_s,   u"'abc'"_s, u"9.3e18"_s, u"9223372036854775808"_s};
    std::mt19937 random(seed);
    const auto value = [&random](const QString& usual) {
        return random() % 5 == 0 ? kValues.at(static_cast<qsizetype>(random() % static_cast<quint64>(kValues.size())))
                                 : usual;
    };
    QString sql;
    for (int row = 0; row < 300; ++row) {
        sql += u"INSERT INTO Z_1ASSETS VALUES (%1, %2, %3);"_s
                   .arg(value(QString::number(random() % 12)), value(QString::number(random() % 1000)))
                   .arg(random() % 6);
    }
    return sql;
}

} // namespace

class TestPhotosOfIPhone : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cameraRollIsRead_data()
    {
        const DRTestTable<QString, QString, QStringList, QStringList, QStringList> row("newer", "older", "files",
                                                                                       "lines", "losses");

        const QString one = kNewer + asset(1, u"A.JPG"_s) + album(5, 1000) + member(5, 1);
        const QStringList oneFile{kCameraRoll + u"A.JPG"_s};
        const QStringList oneLine{u"A.JPG 0x10 = %1A.JPG"_s.arg(kCameraRoll)};
        const QString kUnknownRoll =
            u"Photos and videos: 1: the photo library does not tell what is in its camera roll (0x00)"_s;
        const QStringList olderFile{u"MediaDomain-Media/DCIM/999APPLE/OLD.PNG"_s};
        const QStringList olderLine{u"OLD.PNG 0x10 = "_s + olderFile.front()};

        row("photo", one, {}, oneFile, oneLine, {});
        row("newer is enough", one, olderLibrary(u"OLD.PNG"_s), oneFile + olderFile, oneLine, {});
        row("older alone", {}, olderLibrary(u"OLD.PNG"_s), olderFile, olderLine, {});
        row("newer is empty", kNewer, olderLibrary(u"OLD.PNG"_s), olderFile, olderLine, {});
        row("newer without camera roll", kNewer + asset(1, u"A.JPG"_s) + album(5, 2) + member(5, 1),
            olderLibrary(u"OLD.PNG"_s), oneFile + olderFile, olderLine, {kUnknownRoll});
        row("the table of members is missing", one + u"DROP TABLE Z_11ASSETS;"_s, {}, oneFile, {}, {kUnknownRoll});
        row("kinds, order of the index",
            kNewer + asset(3, u"a.MoV"_s) + asset(1, u"b.avi"_s) + asset(2, u"c.heic"_s) + album(5, 1000) +
                u"INSERT INTO Z_11ASSETS VALUES (5, 1, 1), (5, 2, 2), (5, 3, 3);"_s,
            {}, {kCameraRoll + u"a.MoV"_s, kCameraRoll + u"b.avi"_s, kCameraRoll + u"c.heic"_s},
            {u"b.avi 0x20 = %1b.avi"_s.arg(kCameraRoll), u"c.heic 0x10 = %1c.heic"_s.arg(kCameraRoll),
             u"a.MoV 0x08 = %1a.MoV"_s.arg(kCameraRoll)},
            {});
        row("the last camera roll counts", one + asset(2, u"B.JPG"_s) + album(6, 1000) + member(6, 2), {},
            oneFile + QStringList{kCameraRoll + u"B.JPG"_s}, {u"B.JPG 0x10 = %1B.JPG"_s.arg(kCameraRoll)},
            {u"Photos and videos outside the camera roll, which are not moved: 1"_s});
        row("the last camera roll counts, though it is empty", one + album(6, 1000), {}, oneFile, {},
            {u"Photos and videos outside the camera roll, which are not moved: 1"_s});
        row("missing files, unknown names, places without a photo",
            one + asset(2, u"B.MOV"_s) + asset(3, u"C.xyz"_s) + asset(4, {}) + member(5, 2) + member(5, 3) +
                member(5, 4) + member(5, 99),
            {}, oneFile + QStringList{kCameraRoll + u"C.xyz"_s},
            oneLine + QStringList{u"C.xyz 0x00 = %1C.xyz"_s.arg(kCameraRoll)},
            {u"Places in the camera roll without a photo or video, which are passed over: 1"_s,
             u"C.xyz: %1 (0x00)"_s.arg(kUnknownName), u"A file without a name: %1 (0x00)"_s.arg(kNotInBackup),
             u"B.MOV: %1 (0x28)"_s.arg(kNotInBackup)});
        row("slashes", kNewer + asset(1, u"A.JPG"_s, u"/DCIM//100APPLE/"_s) + album(5, 1000) + member(5, 1), {},
            oneFile, oneLine, {});
        row("name that is a path", kNewer + asset(1, u"../../evil.jpg"_s) + album(5, 1000) + member(5, 1), {},
            {kCameraRoll + u"../../evil.jpg"_s}, {u"../../evil.jpg 0x10 = %1../../evil.jpg"_s.arg(kCameraRoll)}, {});
    }

    void cameraRollIsRead()
    {
        QFETCH(QString, newer);
        QFETCH(QString, older);
        QFETCH(QStringList, files);
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kNewerDatabase, newer) && fixture.makeDatabase(kOlderDatabase, older));
        QVERIFY(fixture.addFiles(files));
        DRMigrateIPhonePhotos photos(fixture.test.services);
        QVERIFY(!photos.load());
        photos.setSourcePath(fixture.backup());
        QVERIFY(photos.load());
        QTEST(linesOf(photos), "lines");
        QTEST(lossesOf(photos), "losses");
        QCOMPARE(photos.report().found, static_cast<qint64>(photos.entries()->size()));
    }

    void albumsAreKept_data()
    {
        const DRTestTable<QString, QString> row("sql", "albums"); // albums: title, key asset, assets
        row("titles",
            kNewer + album(1, 2, u"'Summer'"_s) + album(2, 2) + album(3, 1000) + album(4, 2) + member(1, 10) +
                member(2, 20) + member(3, 30) + member(3, 31),
            u"Summer 7 10|<Unnamed> ID: 2, Kind: 2 7 20|Camera Roll 7 30,31"_s);
        row("no join table",
            kAssets + kAlbums + album(1, 1000) + u"CREATE TABLE Z_ASSETS_AND_ASSETS(Z_1ALBUMS, Z_1ASSETS);"_s, {});
        row("other numbers",
            kAssets + kAlbums + album(1, 2, u"'x'"_s) +
                u"CREATE TABLE Z_2KEYWORDS(a, b);"
                "CREATE TABLE Z_20ASSETS(Z_1ASSETSX, Z_FOK_27ASSETS, Z_27ASSETS, Z_28ASSETS, "
                "Z_19ALBUMS, Z_20ALBUMS, ZALBUMSX);"
                "INSERT INTO Z_20ASSETS VALUES (0, 1, 2, 3, 9, 1, 9);"_s,
            u"x 7 2"_s);
        // "Z_1ASSETS; ..." begins and ends like the name of a join table, and is the first.
        row("hostile table",
            kAssets + kAlbums + album(1, 2) + u"CREATE TABLE \"Z_1' UNION ASSETS\"(Z_1ALBUMS, Z_1ASSETS);"_s + kJoin +
                member(1, 10),
            {});
        row("hostile column",
            kAssets + kAlbums + album(1, 2) +
                u"CREATE TABLE Z_1ASSETS(Z_1ALBUMS, \"1 AS x, 7 AS ASSETS\");INSERT INTO Z_1ASSETS VALUES (1, 5);"_s,
            {});
    }

    void albumsAreKept()
    {
        QFETCH(QString, sql);
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kNewerDatabase, sql));
        DRMigrateIPhonePhotos photos(fixture.test.services);
        photos.setSourcePath(fixture.backup());
        static_cast<void>(photos.load());
        QStringList albums;
        for (const DRImportedAlbum& one : photos.albums()) {
            QStringList ids;
            for (const qint64 id : one.assetIds) {
                ids << QString::number(id);
            }
            albums << u"%1 %2 %3"_s.arg(one.title).arg(one.keyAssetId).arg(ids.join(u','));
        }
        QTEST(albums.join(u'|'), "albums");
    }

    void onlyRegularFilesCount()
    {
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kNewerDatabase, kNewer + asset(1, u"link.jpg"_s) + asset(2, u"folder.jpg"_s) +
                                                         asset(3, u"whole.jpg"_s) + album(1, 1000) + member(1, 1) +
                                                         member(1, 2) + member(1, 3)));
        QVERIFY(fixture.addFiles({kCameraRoll + u"whole.jpg"_s}));
        QVERIFY(QFile::link(u"/dev/zero"_s, fixture.backedUp(kCameraRoll + u"link.jpg"_s)));
        QVERIFY(QDir().mkpath(fixture.backedUp(kCameraRoll + u"folder.jpg"_s)));
        DRMigrateIPhonePhotos photos(fixture.test.services);
        photos.setSourcePath(fixture.backup());
        QVERIFY(photos.load());
        QCOMPARE(linesOf(photos), QStringList{u"whole.jpg 0x10 = %1whole.jpg"_s.arg(kCameraRoll)});
        QCOMPARE(photos.assets().size(), 1);
        QCOMPARE(photos.assets().value(3).uti, u"public.jpeg"_s);
        QCOMPARE(photos.report().skipped.size(), 2U);
    }

    void lossesAreCountedByKind()
    {
        QString sql = kNewer + album(1, 1000);
        for (int key = 1; key <= 203; ++key) {
            sql += asset(key, u"%1.jpg"_s.arg(key)) + member(1, key);
        }
        sql += asset(300, u"film.mov"_s) + member(1, 300);
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kNewerDatabase, sql));
        DRMigrateIPhonePhotos photos(fixture.test.services);
        photos.setSourcePath(fixture.backup());
        QVERIFY(photos.load());
        const QStringList losses = lossesOf(photos);
        QCOMPARE(losses.size(), 202);
        QCOMPARE(losses.at(199), u"200.jpg: %1 (0x10)"_s.arg(kNotInBackup));
        QCOMPARE(losses.at(200), u"Further photos: 3: for reasons like these (0x10)"_s);
        QCOMPARE(losses.at(201), u"film.mov: %1 (0x28)"_s.arg(kNotInBackup));
    }

    void damageIsTold_data()
    {
        const QString all = u"All photos and videos: the backup's photo library is damaged (0x00)"_s;
        const QString some = u"Some photos and videos: the backup's photo library is damaged (0x00)"_s;
        // newer: in place of a database; null: none
        const DRTestTable<QByteArray, QString, bool, bool, QStringList> row("newer", "older", "isLoaded",
                                                                            "isNotInBackup", "losses");
        row("neither", {}, {}, false, true, {});
        row("no database", "no database", {}, false, false, {all});
        row("no database, older is sound", "no database", olderLibrary(u"OLD.PNG"_s), true, false, {some});
        row("older without its join table", {},
            u"CREATE TABLE Photo(a); CREATE TABLE PhotoAlbum(primaryKey, kind);"
            "INSERT INTO PhotoAlbum VALUES (1, 1000);"_s,
            false, false, {all});
        row("older without a column of its join table", {},
            u"CREATE TABLE Photo(a); CREATE TABLE PhotoAlbum(primaryKey, kind);"
            "CREATE TABLE PhotoAlbumToPhotoJoin(\"left\");"
            "INSERT INTO PhotoAlbumToPhotoJoin VALUES (1); INSERT INTO PhotoAlbum VALUES (1, 1000);"_s,
            false, false, {all});
    }

    void damageIsTold()
    {
        QFETCH(QByteArray, newer);
        QFETCH(QString, older);
        const DRMediaFixture fixture;
        QVERIFY(newer.isNull() || writeFile(fixture.backedUp(kNewerDatabase), newer));
        QVERIFY(fixture.makeDatabase(kOlderDatabase, older));
        QVERIFY(fixture.addFiles({u"MediaDomain-Media/DCIM/999APPLE/OLD.PNG"_s}));
        DRMigrateIPhonePhotos photos(fixture.test.services);
        photos.setSourcePath(fixture.backup());
        QTEST(photos.load(), "isLoaded");
        QTEST(photos.report().isNotInBackup, "isNotInBackup");
        QTEST(lossesOf(photos), "losses");
    }

    void joinAnswersAsItsStatement_data()
    {
        const DRTestTable<QString, QString> row("columns", "indexes");
        const QString real = u"Z_1ALBUMS INTEGER, Z_2ASSETS INTEGER, Z_FOK_2ASSETS INTEGER"_s;
        row("no index", real, {});
        row("no types", u"Z_1ALBUMS, Z_2ASSETS, Z_FOK_2ASSETS"_s, {});
        row("texts", u"Z_1ALBUMS TEXT, Z_2ASSETS TEXT, Z_FOK_2ASSETS"_s, {});
        row("reals", u"Z_1ALBUMS REAL, Z_2ASSETS REAL, Z_FOK_2ASSETS"_s, {});
        row("index of the iPhone", real, u"CREATE INDEX i ON Z_1ASSETS(Z_1ALBUMS, Z_FOK_2ASSETS, Z_2ASSETS);"_s);
        row("index of the assets", real, u"CREATE INDEX i ON Z_1ASSETS(Z_2ASSETS, Z_1ALBUMS);"_s);
        row("both, analysed", real,
            u"CREATE INDEX i ON Z_1ASSETS(Z_2ASSETS, Z_1ALBUMS);"
            "CREATE INDEX j ON Z_1ASSETS(Z_1ALBUMS, Z_FOK_2ASSETS); ANALYZE;"_s);
        row("order first, analysed", real,
            u"CREATE INDEX i ON Z_1ASSETS(Z_FOK_2ASSETS, Z_1ALBUMS, Z_2ASSETS); ANALYZE;"_s);
    }

    void joinAnswersAsItsStatement()
    {
        QFETCH(QString, columns);
        QFETCH(QString, indexes);
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kNewerDatabase,
                                     u"CREATE TABLE Z_1ASSETS(%1);"_s.arg(columns) + randomMembers(7) + indexes));
        auto database = DRDatabase::open(fixture.backedUp(kNewerDatabase), DRDatabase::Profile::Source);
        QVERIFY(database);
        DRAlbumJoin join = DRAlbumJoin::ofNewerLayout(*database);
        qsizetype found = 0;
        for (const qint64 album : {0LL, 1LL, 2LL, 3LL, 4LL, 5LL, 6LL, 7LL, 8LL, 9LL, 10LL, 11LL, -4LL, 99LL,
                                   9223372036854775807LL, -9223372036854775807LL - 1}) {
            QList<qint64> expected;
            DRResultSet row =
                database->executeQuery(u"SELECT Z_2ASSETS FROM Z_1ASSETS WHERE Z_1ALBUMS=%1"_s.arg(album));
            while (row.next()) {
                expected.append(row.integerAt(0));
            }
            QVERIFY(!row.hasFailed());
            QCOMPARE(join.assetIdsOfAlbum(album), expected);
            found += expected.size();
        }
        QVERIFY(join.isComplete());
        QVERIFY2(found > 200, qPrintable(QString::number(found)));
    }
};

QTEST_GUILESS_MAIN(TestPhotosOfIPhone)
#include "TestPhotosOfIPhone.moc"
