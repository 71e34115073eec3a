#include "convert/media/DRMigrateAndroidMusic.h"

#include "platform/device/DRDCFilesystem.h"
#include "platform/device/DRMigrateFileKinds.h"
#include "platform/media_library/DRMDFileProcessorCreateM3U.h"

#include <utility>

using namespace Qt::StringLiterals;

std::vector<DRDCFilePointer> DRMigrateAndroidMusic::entriesToTransfer() const
{
    return filesOf(*entries());
}

void DRMigrateAndroidMusic::transferFilesWithTarget(TransferHandler handler)
{
    DRMigrateMediaDataType::transferFilesWithTarget(std::move(handler));
    copyEntries(u"kDRMigrateDeviceTaskID_Music"_s, [](DRDCFile& file, const DRDCFilesystem& filesystem) {
        if (file.fileKind() == DRMigrateFileKinds::kPlaylist) {
            file.addFileProcessor(DRMDFileProcessorCreateM3U::fileProcessor());
        }
        file.setMetadata(filesystem.defaultPathForFile(file), QLatin1StringView(DRDCFile::kTargetPath));
    });
}
