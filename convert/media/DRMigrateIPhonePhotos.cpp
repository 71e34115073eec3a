#include "convert/media/DRMigrateIPhonePhotos.h"

#include "convert/media/DRMediaLosses.h"
#include "convert/media/DRPhotoLayout.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRDCFileUtils.h"
#include "platform/device/DRMigrateFileKinds.h"

#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

quint32 kindOfName(const QString& filename)
{
    return DRDCFileUtils::fileKindFromFileExtension(DRDCFileUtils::extensionOfName(filename));
}

/// What the libraries read so far have given, and what is wrong with them.
class Reading {
public:
    /// Takes over the camera roll of a library.
    void add(const DRPhotoLibrary& library);

    /// A library that is there, but cannot be opened.
    void addUnreadable() { ++m_damagedCount; }

    [[nodiscard]] bool hasEntries() const { return !m_entries.empty(); }

    /// Whether there is anything to rely on, be it an empty library.
    [[nodiscard]] bool isUsable() const { return hasEntries() || m_soundCount > 0; }

    [[nodiscard]] DRMigrateReport report() const;
    [[nodiscard]] DREntryList takeEntries() { return std::move(m_entries); }

private:
    void addCameraRoll(const DRImportedAlbum& cameraRoll, const DRPhotoLibrary& library);
    void addFile(const DRImportedAsset& asset);

    DREntryList m_entries;
    DRMediaLosses m_losses;
    int m_soundCount = 0;
    int m_damagedCount = 0;
    qint64 m_withoutCameraRoll = 0; ///< assets of libraries that have none
    qint64 m_outsideCameraRoll = 0;
    qint64 m_leadingNowhere = 0; ///< places in the camera roll that no asset takes
};

void Reading::add(const DRPhotoLibrary& library)
{
    ++(library.isComplete ? m_soundCount : m_damagedCount);
    if (library.cameraRoll && library.tellsMembers) {
        addCameraRoll(*library.cameraRoll, library);
    } else {
        m_withoutCameraRoll += library.assetCount();
    }
}

void Reading::addCameraRoll(const DRImportedAlbum& cameraRoll, const DRPhotoLibrary& library)
{
    QSet<qint64> placed;
    for (const qint64 key : cameraRoll.assetIds) {
        const auto asset = library.assets.constFind(key);
        const auto missing = library.missingAssets.constFind(key);
        if (asset != library.assets.cend()) {
            addFile(*asset);
        } else if (missing != library.missingAssets.cend()) {
            m_losses.add(*missing, kindOfName(*missing), DRIPhoneBackupFiles::reasonOfMissingFile());
        } else {
            ++m_leadingNowhere;
            continue;
        }
        placed.insert(key);
    }
    if (library.isComplete) { // else nobody knows what was in it
        m_outsideCameraRoll += library.assetCount() - placed.size();
    }
}

void Reading::addFile(const DRImportedAsset& asset)
{
    const quint32 kind = kindOfName(asset.filename);
    DRDCFilePointer file = DRDCFile::fileWithSourcePath(asset.path);
    file->setFileKind(kind);
    file->setMetadata(asset.filename, QLatin1StringView(DRDCFile::kTargetFileName));
    m_entries.emplace_back(std::move(file));
    if ((kind & (DRMigrateFileKinds::kPhotos | DRMigrateFileKinds::kVideos)) == 0) {
        m_losses.add(asset.filename, 0, u"its name does not tell a photo or video that this version knows"_s);
    }
}

DRMigrateReport Reading::report() const
{
    DRMigrateReport report;
    report.found = static_cast<qint64>(m_entries.size());
    if (m_damagedCount > 0) {
        report.skipped.push_back({.what = isUsable() ? u"Some photos and videos"_s : u"All photos and videos"_s,
                                  .why = u"the backup's photo library is damaged"_s});
    }
    if (m_withoutCameraRoll > 0) {
        report.skipped.push_back({.what = u"Photos and videos: %1"_s.arg(m_withoutCameraRoll),
                                  .why = u"the photo library does not tell what is in its camera roll"_s});
    }
    m_losses.tell(report);
    if (m_outsideCameraRoll > 0) {
        report.warnings.append(
            u"Photos and videos outside the camera roll, which are not moved: %1"_s.arg(m_outsideCameraRoll));
    }
    if (m_leadingNowhere > 0) {
        report.warnings.append(
            u"Places in the camera roll without a photo or video, which are passed over: %1"_s.arg(m_leadingNowhere));
    }
    return report;
}

} // namespace

bool DRMigrateIPhonePhotos::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    Reading reading;
    bool isInBackup = false;
    for (const DRPhotoLayout& layout : DRPhotoLayout::all()) {
        if (!DRIPhoneBackupFiles::holds(sourcePath(), layout.database())) {
            continue;
        }
        isInBackup = true;
        auto database =
            DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), layout.database(), services().folders.temporary);
        if (!database) {
            qCWarning(lcMigrate, "A photo library of the backup cannot be opened");
            reading.addUnreadable();
            continue;
        }
        DRPhotoLibrary library =
            DRPhotoLibrary::read(**database, layout, DRIPhoneBackupFiles::folderOfFiles(sourcePath()));
        if (!library.isComplete) {
            qCWarning(lcMigrate, "A photo library of the backup cannot be read to its end: %ls",
                      qUtf16Printable((*database)->lastErrorMessage()));
        }
        reading.add(library);
        m_assets = std::move(library.assets);
        m_albums = std::move(library.albums);
        if (reading.hasEntries()) {
            break;
        }
    }
    DRMigrateReport outcome = reading.report();
    outcome.isNotInBackup = !isInBackup;
    const bool isUsable = reading.isUsable();
    setReport(std::move(outcome));
    setEntries(reading.takeEntries());
    return isUsable;
}
