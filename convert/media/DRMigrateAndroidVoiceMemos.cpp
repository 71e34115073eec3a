#include "convert/media/DRMigrateAndroidVoiceMemos.h"

#include "model/packet/DRMigratePacketCodec.h"

#include <utility>

using namespace Qt::StringLiterals;

std::vector<DRDCFilePointer> DRMigrateAndroidVoiceMemos::entriesToTransfer() const
{
    return filesOf(*entries());
}

void DRMigrateAndroidVoiceMemos::transferFilesWithTarget(TransferHandler handler)
{
    DRMigrateMediaDataType::transferFilesWithTarget(std::move(handler));
    m_devicePath = DRMigrateUtils::pathToVoiceMemoLocationOnDevice();
    copyEntries(u"kDRMigrateDeviceTaskID_VoiceMemos"_s, placementIn(m_devicePath));
}
