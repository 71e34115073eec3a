#include "convert/media/DRMigrateAndroidPhotos.h"

#include "convert/media/DRMediaLosses.h"
#include "convert/media/DRVideoCleaner.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/device/DRDCDeviceController.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kLastAndroidThatNeedsCleanVideos = 2;

} // namespace

DRMigrateAndroidPhotos::DRMigrateAndroidPhotos(const DRMigrateServices& services,
                                               std::shared_ptr<const DRVideoCleaner> cleaner)
    : DRMigrateAndroidMediaDataType(services), m_cleaner(std::move(cleaner))
{
}

DRMigrateAndroidPhotos::~DRMigrateAndroidPhotos() = default;

bool DRMigrateAndroidPhotos::save()
{
    const DRDCDevicePointer device = services().deviceController.activeDevice();
    if (!device || device->androidBaseVersion() > kLastAndroidThatNeedsCleanVideos) {
        return true;
    }
    if ((fileKindsToTransfer() & DRMigrateFileKinds::kVideos) == 0) {
        return true; // nobody wants them
    }
    DRVideoCleaner::Outcome outcome = m_cleaner->cleanEntries(filesOf(*entries()));
    DREntryList cleaned;
    cleaned.reserve(outcome.files.size());
    for (DRDCFilePointer& file : outcome.files) {
        cleaned.emplace_back(std::move(file));
    }
    setEntries(std::move(cleaned));
    DRMediaLosses losses;
    for (const DRDCFilePointer& file : outcome.dropped) {
        losses.add(file->displayName(), file->fileKind(), u"it could not be prepared for this phone's player"_s);
    }
    DRMigrateReport changed = report();
    losses.tell(changed);
    setReport(std::move(changed));
    return true;
}

void DRMigrateAndroidPhotos::transferFilesWithTarget(TransferHandler handler)
{
    DRMigrateMediaDataType::transferFilesWithTarget(std::move(handler));
    m_devicePath = DRMigrateUtils::pathToPhotoLocationOnDevice();
    copyEntries(u"kDRMigrateDeviceTaskID_Photos"_s, placementIn(m_devicePath));
}
