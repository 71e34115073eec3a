#pragma once

#include <QList>
#include <QString>

class DRAlbumJoin;

/// One album of the iPhone's photo library.
struct DRImportedAlbum {
    QString title;
    qint64 keyAssetId = 0;  ///< the asset that stands for the album
    QList<qint64> assetIds; ///< keys of its assets, in the order of the library's rows

    bool operator==(const DRImportedAlbum&) const = default;

    /// The album with its assets as the library's join table, of either layout, tells them.
    [[nodiscard]] static DRImportedAlbum
    importAlbum(DRAlbumJoin& join, qint64 albumKey, const QString& title, qint64 keyAssetId);
};
