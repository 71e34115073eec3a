// The cost of a photo must not depend on how many there are, nor on how many albums: reading libraries with 1,000 and
// 20,000 photos, one album for each 100 of them, whose join table has an index as on the iPhone or none; per photo.

#include "convert/media/DRMigrateIPhonePhotos.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"
#include "tests/support/DRTestServices.h"

#include <QDir>
#include <QFile>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kPhotosPerAlbum = 100;

bool writeTables(DRDatabase& database, bool hasIndex)
{
    return database.executeScript(
               u"CREATE TABLE ZGENERICASSET(Z_PK INTEGER PRIMARY KEY, ZDIRECTORY, ZFILENAME);"
               "CREATE TABLE ZGENERICALBUM(Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, ZTITLE);"
               "CREATE TABLE Z_11ASSETS(Z_11ALBUMS INTEGER, Z_17ASSETS INTEGER, Z_FOK_17ASSETS INTEGER);"_s) &&
           (!hasIndex ||
            database.executeScript(u"CREATE INDEX i ON Z_11ASSETS(Z_11ALBUMS, Z_FOK_17ASSETS, Z_17ASSETS)"_s));
}

/// Album 0 is the camera roll, which holds them all.
bool writeBackup(const QString& folder, qint64 photos, bool hasIndex)
{
    QDir().mkpath(folder);
    const auto placeOf = [&folder](const QString& path) {
        return folder + u'/' + sha1HexString(u"CameraRollDomain-Media/"_s + path);
    };
    auto database = DRDatabase::open(placeOf(u"PhotoData/Photos.sqlite"_s), DRDatabase::Profile::Create);
    if (!database || !writeTables(*database, hasIndex)) {
        return false;
    }
    DRTransaction transaction(*database);
    DRStatement asset = database->prepare(u"INSERT INTO ZGENERICASSET VALUES (?, ?, ?)"_s);
    DRStatement album = database->prepare(u"INSERT INTO ZGENERICALBUM VALUES (?, ?, ?)"_s);
    DRStatement member = database->prepare(u"INSERT INTO Z_11ASSETS VALUES (?, ?, ?)"_s);
    bool isWritten = album.update({qint64{0}, qint64{1000}, QString()});
    for (qint64 id = 1; id <= photos && isWritten; ++id) {
        const QString name = u"IMG_%1.JPG"_s.arg(id);
        const qint64 albumId = 1 + id / kPhotosPerAlbum;
        QFile file(placeOf(u"DCIM/100APPLE/"_s + name));
        isWritten = file.open(QIODevice::WriteOnly) && asset.update({id, u"DCIM/100APPLE"_s, name}) &&
                    (id % kPhotosPerAlbum != 1 || album.update({albumId, qint64{2}, u"Album"_s})) &&
                    member.update({qint64{0}, id, id}) && member.update({albumId, id, id});
    }
    return isWritten && transaction.commit();
}

void readPhotos(benchmark::State& state)
{
    const DRTestServices test;
    const QString folder = test.root.filePath(u"backup"_s);
    if (!writeBackup(folder, state.range(0), state.range(1) != 0)) {
        state.SkipWithError("the backup cannot be written");
        return;
    }
    for ([[maybe_unused]] auto iteration : state) {
        DRMigrateIPhonePhotos source(test.services);
        source.setSourcePath(folder);
        if (!source.load() || source.report().found != state.range(0)) {
            state.SkipWithError("the photos were not read");
            return;
        }
    }
    state.counters["per photo"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

BENCHMARK(readPhotos)
    ->ArgNames({"photos", "index"})
    ->ArgsProduct({{1000, 20000}, {1, 0}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
