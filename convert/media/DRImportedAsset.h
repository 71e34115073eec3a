#pragma once

#include <QString>

#include <optional>

/// One photo or video of the iPhone's library whose file is in the backup.
struct DRImportedAsset {
    QString path;     ///< of the file in the backup folder
    QString uti;      ///< uniform type identifier, such as "public.jpeg"
    QString filename; ///< on the iPhone, such as "IMG_0001.JPG"; foreign text
    QString title;    ///< null when it has none

    bool operator==(const DRImportedAsset&) const = default;

    /// The folder of an asset on the iPhone.
    struct Place {
        QString domain;    ///< such as "CameraRollDomain"
        QString root;      ///< relative to the domain, such as "Media"
        QString directory; ///< relative to the root, such as "DCIM/100APPLE"
    };

    /// Looks for the asset's file in the backup. `backupFolder`: as `DRIPhoneBackupFiles::folderOfFiles` answers it. None
    /// when the backup does not hold it as a regular file.
    [[nodiscard]] static std::optional<DRImportedAsset> importAsset(const QString& backupFolder,
                                                                    const Place& place,
                                                                    const QString& filename,
                                                                    const QString& uti,
                                                                    const QString& title);
};
