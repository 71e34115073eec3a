#pragma once

#include "convert/media/DRPhotoLibrary.h"
#include "model/media/DRMigrateMediaDataType.h"

/// Reads the photo library of an iPhone backup, of the newer layout or else of the older one. Entries are
/// `DRDCFilePointer`, one for each photo and video of the camera roll, in its order, each with its kind and its
/// "TargetFileName".
class DRMigrateIPhonePhotos final : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    /// Reads "PhotoData/Photos.sqlite" of the camera roll's domain and, when that gives no entries, of the media domain.
    /// Photos and videos whose file is not in the backup are left out, which the report tells, as it tells what is not in
    /// the camera roll. False when the backup holds no library or none can be read.
    [[nodiscard]] bool load() override;

    /// The assets whose file is in the backup, by their key, and the albums with assets. Of the library read last; to be
    /// asked after the load.
    [[nodiscard]] const QHash<qint64, DRImportedAsset>& assets() const { return m_assets; }
    [[nodiscard]] const std::vector<DRImportedAlbum>& albums() const { return m_albums; }

private:
    QHash<qint64, DRImportedAsset> m_assets;
    std::vector<DRImportedAlbum> m_albums;
};
