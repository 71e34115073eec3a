#include "convert/media/DRImportedAsset.h"

#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRFiles.h"

#include <QStringList>

namespace {

/// The components joined by single slashes, however many they bring along. ".." stays as it is: the path is a name to
/// make a digest of and leads nowhere.
QString joinedPath(const QStringList& components)
{
    return components.join(u'/').split(u'/', Qt::SkipEmptyParts).join(u'/');
}

} // namespace

std::optional<DRImportedAsset> DRImportedAsset::importAsset(
    const QString& backupFolder, const Place& place, const QString& filename, const QString& uti, const QString& title)
{
    const QString relativePath = joinedPath({place.root, place.directory, filename});
    const QString path = DRIPhoneBackupFiles::placeInFolder(backupFolder, place.domain + u'-' + relativePath);
    if (!DRFiles::isRegularFile(path)) {
        return std::nullopt;
    }
    return DRImportedAsset{.path = path, .uti = uti, .filename = filename, .title = title};
}
