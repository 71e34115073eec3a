#include "convert/media/DRImportedAlbum.h"

#include "convert/media/DRAlbumJoin.h"

DRImportedAlbum
DRImportedAlbum::importAlbum(DRAlbumJoin& join, qint64 albumKey, const QString& title, qint64 keyAssetId)
{
    return {.title = title, .keyAssetId = keyAssetId, .assetIds = join.assetIdsOfAlbum(albumKey)};
}
