#include "platform/device/DRDCDeviceController.h"

#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRDCNotifications.h"

DRDCDeviceController::DRDCDeviceController(DRNotificationCenter& notificationCenter)
    : m_notificationCenter(notificationCenter)
{
}

DRDCDevicePointer DRDCDeviceController::activeDevice() const
{
    const std::scoped_lock lock(m_deviceMutex);
    return m_device && m_device->isConnected() ? m_device : nullptr;
}

void DRDCDeviceController::setActiveDevice(const DRDCDevicePointer& device)
{
    const auto post = [this, &device](const QString& name) {
        m_notificationCenter.post({.name = name, .object = device, .userInfo = {}});
    };
    post(DRDCNotifications::kActiveDeviceWillChange);
    {
        const std::scoped_lock lock(m_deviceMutex);
        m_device = device;
    }
    if (!device || !device->isConnected()) {
        return;
    }
    post(DRDCNotifications::kActiveDeviceWillFinishInit);
    if (device->hasStateFlag(DRDCDevice::kStateFlagReady)) {
        post(DRDCNotifications::kActiveDeviceDidFinishEnumeration);
    }
}
