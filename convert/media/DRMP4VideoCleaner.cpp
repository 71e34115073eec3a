#include "convert/media/DRMP4VideoCleaner.h"

#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPrivateFolder.h"
#include "platform/device/DRMigrateFileKinds.h"
#include "platform/media/DRVideoBoxes.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximumNumber = 100'000;

bool needsCleaning(const DRDCFile& file)
{
    using Outcome = DRVideoBoxes::Outcome;
    if (file.fileKind() != DRMigrateFileKinds::kFilms && file.fileKind() != DRMigrateFileKinds::kOtherVideos) {
        return false;
    }
    const Outcome outcome = DRVideoBoxes::wouldRemove(file.sourcePath(), DRVideoBoxes::pathsForOldPhones());
    // Where the disk did not answer, the copy asks it again. What cannot be opened at all fails when it is transferred.
    return outcome == Outcome::Removed ||
           (outcome == Outcome::Failed && DRFileDescriptor::openRegularFile(file.sourcePath()).isOpen());
}

struct NewFile {
    DRFileDescriptor file; ///< not open when it could not be made
    QString path;
};

/// A new file of this name in the folder or, when another video of that name was there first, in a numbered one beside it.
NewFile makeFile(const QString& folder, const QString& name)
{
    constexpr mode_t kOwnerOnly = 0600;
    for (int number = 1; number <= kMaximumNumber; ++number) {
        const QString place = number == 1 ? folder : folder + u'-' + QString::number(number);
        const QString path = place + u'/' + name;
        if (!DRPrivateFolder::make(place)) {
            break;
        }
        DRFileDescriptor file = DRFileDescriptor::open(path, O_WRONLY | O_CREAT | O_EXCL, kOwnerOnly);
        if (file.isOpen() || errno != EEXIST) {
            return {.file = std::move(file), .path = path};
        }
    }
    return {};
}

bool keepTimeOfChange(const QString& source, const DRFileDescriptor& target)
{
    const auto status = statusWithoutFollowing(source);
    if (!status) {
        return false;
    }
    const std::array times{status->st_mtim, status->st_mtim};
    return ::futimens(target.number(), times.data()) == 0;
}

/// The path of the copy; null when it cannot be written, with nothing of it left.
QString writeCleanedCopy(const QString& source, const QString& folder)
{
    const NewFile target = makeFile(folder, QFileInfo(source).fileName());
    if (!target.file.isOpen()) {
        qCWarning(lcMigrate, "No cleaned video can be made in %ls", qUtf16Printable(folder));
        return {};
    }
    const bool isWritten = DRVideoBoxes::writeWithoutBoxes(source, target.file, DRVideoBoxes::pathsForOldPhones()) !=
                               DRVideoBoxes::Outcome::Failed &&
                           keepTimeOfChange(source, target.file);
    if (!isWritten) {
        qCWarning(lcMigrate, "A cleaned video cannot be written to %ls", qUtf16Printable(folder));
        QFile::remove(target.path);
        return {};
    }
    return target.path;
}

DRDCFilePointer recordOfCopy(const DRDCFile& video, const QString& path)
{
    DRDCFilePointer copy = DRDCFile::fileWithSourcePath(path);
    copy->setFileKind(video.fileKind());
    const QVariant name = video.metadataForKey(QLatin1StringView(DRDCFile::kTargetFileName));
    if (name.isValid()) {
        copy->setMetadata(name, QLatin1StringView(DRDCFile::kTargetFileName));
    }
    return copy;
}

} // namespace

DRMP4VideoCleaner::DRMP4VideoCleaner(QString temporaryFolder) : m_temporaryFolder(std::move(temporaryFolder)) {}

DRVideoCleaner::Outcome DRMP4VideoCleaner::cleanEntries(const std::vector<DRDCFilePointer>& files) const
{
    const QString folder = DRMigrateUtils::pathToInflateFolder(m_temporaryFolder) + u"/cleanedVideos"_s;
    Outcome outcome;
    outcome.files.reserve(files.size());
    QHash<QString, QString> copies; // by their source: a library may list one video many times
    for (const DRDCFilePointer& file : files) {
        if (!needsCleaning(*file)) {
            outcome.files.push_back(file);
            continue;
        }
        if (!copies.contains(file->sourcePath())) {
            copies.insert(file->sourcePath(), writeCleanedCopy(file->sourcePath(), folder));
        }
        if (const QString copy = copies.value(file->sourcePath()); !copy.isNull()) {
            outcome.files.push_back(recordOfCopy(*file, copy));
        } else {
            outcome.dropped.push_back(file);
        }
    }
    return outcome;
}
