#include "model/media/DRMigrateMediaDataType.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRDates.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/device/DRDCNotifications.h"
#include "platform/device/DRMigrateFileKinds.h"

#include <algorithm>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

DRDCFileFailures allFailed(const std::vector<DRDCFilePointer>& files, const QString& reason)
{
    std::vector<DRDCFileFailure> failures;
    failures.reserve(files.size());
    for (const DRDCFilePointer& file : files) {
        failures.push_back({.file = file, .reason = reason});
    }
    return failures;
}

/// How many of the files are playlists, and how many are not.
struct Tally {
    qint64 files = 0;
    qint64 playlists = 0;
};

Tally tallyOf(const std::vector<DRDCFilePointer>& files)
{
    const auto isPlaylist = [](const auto& file) { return file->fileKind() == DRMigrateFileKinds::kPlaylist; };
    const qint64 playlists = std::ranges::count_if(files, isPlaylist);
    return {.files = static_cast<qint64>(files.size()) - playlists, .playlists = playlists};
}

/// Foreign text as one visible name: no way to another folder, and no ".nomedia", which hides all files beside it.
QString oneName(QString text)
{
    text.replace(u'/', u'_').remove(QChar::Null);
    return text.isEmpty() || text.startsWith(u'.') ? u'_' + text.mid(1) : text;
}

} // namespace

DRMigrateMediaDataType::DRMigrateMediaDataType(const DRMigrateServices& services) : DRMigrateDataType(services) {}

DRMigrateMediaDataType::~DRMigrateMediaDataType() = default;

quint64 DRMigrateMediaDataType::bytesToTransfer() const
{
    if (m_bytesToTransfer == 0) {
        for (const DRDCFilePointer& file : entriesToTransfer()) {
            m_bytesToTransfer += file->filesize();
        }
    }
    return m_bytesToTransfer;
}

quint64 DRMigrateMediaDataType::bytesTransferred() const
{
    if ((flags() & kDRMigrateDataTypeFlagRestored) != 0) {
        return bytesToTransfer();
    }
    return static_cast<quint64>(
        DRDates::saturatingInteger(static_cast<double>(bytesToTransfer()) * std::clamp(m_mediaProgress, 0.0, 1.0)));
}

qsizetype DRMigrateMediaDataType::mediaCountOfFileKinds(quint32 mask) const
{
    const DREntries all = entries();
    const auto files = recordsOf<DRDCFilePointer>(*all); // not copied: asked for again and again while kinds are loaded
    return std::ranges::count_if(files, [mask](const auto* file) { return ((*file)->fileKind() & mask) != 0; });
}

quint64 DRMigrateMediaDataType::bytesNeededForFileKinds(quint32 mask) const
{
    const DREntries all = entries();
    const auto files = recordsOf<DRDCFilePointer>(*all);
    return std::accumulate(files.begin(), files.end(), quint64{0}, [mask](quint64 sum, const auto* file) {
        return ((*file)->fileKind() & mask) != 0 ? sum + (*file)->filesize() : sum;
    });
}

std::vector<DRDCFilePointer> DRMigrateMediaDataType::entriesToTransfer() const
{
    auto files = filesOf(*entries());
    std::erase_if(files, [this](const auto& file) { return (file->fileKind() & m_fileKindsToTransfer) == 0; });
    return files;
}

void DRMigrateMediaDataType::transferFilesWithTarget(TransferHandler handler)
{
    m_handler = std::move(handler);
    m_progressRegistration = services().notificationCenter.observe(
        DRDCNotifications::kTaskDidUpdate,
        [this](const DRNotification& notification) { deviceTaskDidUpdateTask(notification); });
}

void DRMigrateMediaDataType::deviceTaskDidUpdateTask(const DRNotification& notification)
{
    m_mediaProgress = 0.0;
    const auto* task = std::any_cast<DRDCDeviceTaskPointer>(&notification.object);
    if (task != nullptr && *task && !m_taskID.isEmpty() && (*task)->taskID() == m_taskID) {
        m_mediaProgress = (*task)->progress();
    }
}

void DRMigrateMediaDataType::transferFilesDone(const DRDCFileFailures& failures)
{
    setFlags(flags() | kDRMigrateDataTypeFlagRestored);
    m_progressRegistration.reset();

    DRMigrateReport changed = report();
    const Tally found = tallyOf(entriesToTransfer());
    changed.found = found.files;
    changed.written = 0;
    if (failures) {
        std::vector<DRDCFilePointer> failed;
        for (const DRDCFileFailure& failure : *failures) {
            failed.push_back(failure.file);
            changed.skipped.push_back({.what = failure.file->displayName(), .why = failure.reason});
        }
        const Tally lost = tallyOf(failed);
        changed.written = found.files - lost.files;
        if (found.playlists > 0) {
            changed.counts[u"playlists"_s] = found.playlists - lost.playlists;
        }
    }
    setReport(std::move(changed));

    if (const TransferHandler handler = std::exchange(m_handler, nullptr)) {
        handler(failures);
    }
}

DRMigrateMediaDataType::FilePreparation DRMigrateMediaDataType::placementIn(const QString& folder)
{
    return [folder](DRDCFile& file, const DRDCFilesystem& /*filesystem*/) {
        file.setMetadata(folder + u'/' + oneName(file.displayName()), QLatin1StringView(DRDCFile::kTargetPath));
    };
}

void DRMigrateMediaDataType::copyEntries(const QString& taskID, const FilePreparation& prepare)
{
    const std::vector<DRDCFilePointer> files = entriesToTransfer();
    const DRDCDevicePointer device = services().deviceController.activeDevice();
    if (files.empty()) {
        transferFilesDone(std::nullopt);
        return;
    }
    if (!device) {
        transferFilesDone(allFailed(files, u"the phone is no longer connected"_s));
        return;
    }
    DRDCFilesystem& filesystem = device->preferredFilesystem();
    const DRDCDeviceTaskPointer task = filesystem.requestTask();
    task->setTaskID(taskID);
    m_taskID = taskID;
    for (const DRDCFilePointer& file : files) {
        file->setMetadata(file->filesize(), QLatin1StringView(DRDCFile::kTargetFileSize));
        prepare(*file, filesystem);
    }
    const auto self = std::static_pointer_cast<DRMigrateMediaDataType>(shared_from_this());
    task->syncContentWithDevice(device, filesystem, files, {},
                                [self](const DRDCFileFailures& failures) { self->transferFilesDone(failures); });
}

std::vector<DRDCFilePointer> DRMigrateMediaDataType::filesOf(const DREntryList& entries)
{
    std::vector<DRDCFilePointer> files;
    files.reserve(entries.size());
    for (const DRDCFilePointer* file : recordsOf<DRDCFilePointer>(entries)) {
        files.push_back(*file);
    }
    return files;
}
