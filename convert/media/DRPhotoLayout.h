#pragma once

#include "convert/media/DRAlbumJoin.h"

#include <array>

#include <QString>

/// How one generation of iPhones keeps its photo library: where the database lies and what its tables and columns are
/// called. See docs/formats/media.md.
struct DRPhotoLayout {
    QString domain; ///< of the database and of the assets' files

    QString assetTable;
    const char* assetKey;
    const char* directory;
    const char* filename;
    const char* assetTitle;
    const char* uti;    ///< null when there is no such column
    QString defaultUti; ///< of every asset then

    QString albumTable;
    const char* albumKey;
    const char* kind;
    const char* keyAsset;
    const char* albumTitle;
    DRAlbumJoin (*join)(DRDatabase& database);

    /// The database, as the backup names it.
    [[nodiscard]] QString database() const;

    /// The root of the assets' directories in their domain.
    static inline const QString kRoot = QStringLiteral("Media");

    /// The newer layout and the older one, in the order in which they are tried.
    [[nodiscard]] static const std::array<DRPhotoLayout, 2>& all();
};
