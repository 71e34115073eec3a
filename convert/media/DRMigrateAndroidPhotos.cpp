#include "convert/media/DRMigrateAndroidPhotos.h"

#include "convert/media/DRVideoCleaner.h"
#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/device/DRDCDeviceController.h"

#include <algorithm>
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
    if (!m_cleaner) {
        const auto isVideo = [](const DRDCFilePointer& file) {
            return (file->fileKind() & DRMigrateFileKinds::kVideos) != 0;
        };
        if (std::ranges::any_of(entriesToTransfer(), isVideo)) {
            DRMigrateReport changed = report();
            changed.warnings.append(u"Videos are copied as they are; this phone's player may refuse some of them"_s);
            setReport(std::move(changed));
        }
        return true;
    }
    DREntryList cleaned;
    for (DRDCFilePointer& file : m_cleaner->cleanEntries(filesOf(*entries()))) {
        cleaned.emplace_back(std::move(file));
    }
    setEntries(std::move(cleaned));
    return true;
}

void DRMigrateAndroidPhotos::transferFilesWithTarget(TransferHandler handler)
{
    DRMigrateMediaDataType::transferFilesWithTarget(std::move(handler));
    m_devicePath = DRMigrateUtils::pathToPhotoLocationOnDevice();
    copyEntries(u"kDRMigrateDeviceTaskID_Photos"_s, placementIn(m_devicePath));
}
