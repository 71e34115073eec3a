#include "convert/media/DRPhotoLibrary.h"

#include "convert/media/DRPhotoLayout.h"
#include "platform/sqlite/DRDatabase.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kCameraRollKind = 1000;

void readAssets(DRPhotoLibrary& library, DRDatabase& database, const DRPhotoLayout& layout, const QString& backupFolder)
{
    DRResultSet row = database.executeQuery(u"SELECT * FROM "_s + layout.assetTable);
    while (row.next()) {
        const qint64 key = row.integer(layout.assetKey);
        const QString filename = row.string(layout.filename);
        const QString uti = layout.uti == nullptr ? layout.defaultUti : row.string(layout.uti);
        auto asset = DRImportedAsset::importAsset(
            backupFolder,
            {.domain = layout.domain, .root = DRPhotoLayout::kRoot, .directory = row.string(layout.directory)},
            filename, uti, row.string(layout.assetTitle));
        if (asset) {
            library.assets.insert(key, *std::move(asset));
        } else {
            library.missingAssets.insert(key, filename);
        }
    }
    library.isComplete = library.isComplete && !row.hasFailed();
}

QString titleOfAlbum(const QString& stored, qint64 key, qint64 kind)
{
    if (!stored.isNull()) {
        return stored;
    }
    return kind == kCameraRollKind ? u"Camera Roll"_s : u"<Unnamed> ID: %1, Kind: %2"_s.arg(key).arg(kind);
}

void readAlbums(DRPhotoLibrary& library, DRDatabase& database, const DRPhotoLayout& layout)
{
    DRAlbumJoin join = layout.join(database);
    library.tellsMembers = join.exists();
    DRResultSet row = database.executeQuery(u"SELECT * FROM "_s + layout.albumTable);
    while (row.next()) {
        const qint64 key = row.integer(layout.albumKey);
        const qint64 kind = row.integer(layout.kind);
        const QString title = titleOfAlbum(row.string(layout.albumTitle), key, kind);
        DRImportedAlbum album = DRImportedAlbum::importAlbum(join, key, title, row.integer(layout.keyAsset));
        if (kind == kCameraRollKind) {
            library.cameraRoll = album;
        }
        if (!album.assetIds.isEmpty()) {
            library.albums.push_back(std::move(album));
        }
    }
    library.isComplete = library.isComplete && !row.hasFailed() && join.isComplete();
}

} // namespace

DRPhotoLibrary DRPhotoLibrary::read(DRDatabase& database, const DRPhotoLayout& layout, const QString& backupFolder)
{
    DRPhotoLibrary library;
    readAssets(library, database, layout, backupFolder);
    readAlbums(library, database, layout);
    return library;
}
