#include "platform/folder_phone/DRFolderPhone.h"

#include "platform/core/DRLog.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/folder_phone/DRFolderPhoneTask.h"
#include "platform/folder_phone/DRMediaPlacement.h"
#include "platform/folder_phone/DRNoFollow.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool looksLikePhone(const DRFolderPhoneRoot& root)
{
    const DRFileDescriptor folder = root.open();
    return statusWithoutFollowing(root.path() + u"/phone.json"_s).has_value() ||
           DRNoFollow::openFolder(folder, DRFolderPhoneRoot::kPacketsFolder).isOpen() ||
           DRNoFollow::openFolder(folder, DRFolderPhoneRoot::kStorageFolder).isOpen();
}

} // namespace

std::shared_ptr<DRFolderPhone>
DRFolderPhone::open(const QString& folder, DRTaskQueue& taskQueue, DRNotificationCenter& notificationCenter)
{
    const auto root = DRFolderPhoneRoot::at(folder);
    if (!root || !looksLikePhone(*root)) {
        qCWarning(lcMigrate) << "No phone in the folder" << folder << "- it would hold phone.json, packets or storage";
        return nullptr;
    }
    const auto description = DRFolderPhoneDescription::readFrom(root->path());
    if (!description) {
        return nullptr;
    }
    return std::make_shared<DRFolderPhone>(Token(), *root, *description, taskQueue, notificationCenter);
}

DRFolderPhone::DRFolderPhone(Token /*token*/,
                             DRFolderPhoneRoot root,
                             DRFolderPhoneDescription description,
                             DRTaskQueue& taskQueue,
                             DRNotificationCenter& notificationCenter)
    : m_root(std::move(root)),
      m_usedSpace(std::make_shared<DRUsedSpace>(m_root)),
      m_description(std::move(description)),
      m_taskQueue(taskQueue),
      m_notificationCenter(notificationCenter)
{
}

std::shared_ptr<DRDCDeviceTask> DRFolderPhone::requestTask()
{
    return std::make_shared<DRFolderPhoneTask>(shared_from_this(), m_taskQueue, m_notificationCenter);
}

void DRFolderPhone::countInBackground()
{
    m_taskQueue.runInBackground([usedSpace = m_usedSpace] { static_cast<void>(usedSpace->bytes()); });
}

quint64 DRFolderPhone::memoryFreeBytes() const
{
    if (!isConnected()) {
        return 0;
    }
    const quint64 capacity = memoryUsableCapacity();
    return capacity - std::min(capacity, m_usedSpace->bytes());
}

QString DRFolderPhone::defaultPathForFile(const DRDCFile& file) const
{
    return DRMediaPlacement::defaultPath(file);
}
