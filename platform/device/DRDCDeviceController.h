#pragma once

#include <mutex>

#include "platform/device/DRDCDevice.h"

class DRNotificationCenter;

/// Knows which phone is in use.
class DRDCDeviceController {
public:
    explicit DRDCDeviceController(DRNotificationCenter& notificationCenter);

    /// The phone in use; null when there is none or it has vanished. Any thread.
    [[nodiscard]] DRDCDevicePointer activeDevice() const;

    /// Puts a phone in use, or none. Main thread. Posts "kDRDCNotification_ActiveDeviceWillChange" before, and for a
    /// phone that is there "kDRDCNotification_ActiveDeviceWillFinishInit" and, once it is ready,
    /// "kDRDCNotification_ActiveDeviceDidFinishEnumeration".
    void setActiveDevice(const DRDCDevicePointer& device);

private:
    DRNotificationCenter& m_notificationCenter;
    mutable std::mutex m_deviceMutex; ///< steps of data types ask in the background
    DRDCDevicePointer m_device;
};
