#pragma once

#include "convert/media/DRImportedAlbum.h"
#include "convert/media/DRImportedAsset.h"

#include <optional>
#include <vector>

#include <QHash>

class DRDatabase;
struct DRPhotoLayout;

/// What an iPhone's photo library holds.
struct DRPhotoLibrary {
    QHash<qint64, DRImportedAsset> assets; ///< by their key; those whose file is in the backup
    QHash<qint64, QString> missingAssets;  ///< the file names of the others, by their key
    std::vector<DRImportedAlbum> albums;   ///< those with assets, in the order of their rows
    std::optional<DRImportedAlbum> cameraRoll;
    bool tellsMembers = true; ///< whether it says which assets its albums hold
    bool isComplete = true;   ///< whether all rows could be read

    [[nodiscard]] qsizetype assetCount() const { return assets.size() + missingAssets.size(); }

    /// Reads a library of this layout. `backupFolder`: as `DRIPhoneBackupFiles::folderOfFiles` answers it.
    [[nodiscard]] static DRPhotoLibrary
    read(DRDatabase& database, const DRPhotoLayout& layout, const QString& backupFolder);
};
