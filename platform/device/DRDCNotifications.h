#pragma once

#include <QString>

/// Names of the events that the device layer posts: the first three the device controller, or a phone that becomes
/// ready later on its own; the others the task that they are about. The object of a task's event is its
/// `DRDCDeviceTaskPointer`; events of a packet carry its ID under `kBackupPacketKey`, those of a data type its key
/// under `kBackupDataTypeKey`.
namespace DRDCNotifications {

inline const QString kActiveDeviceWillChange = QStringLiteral("kDRDCNotification_ActiveDeviceWillChange");
inline const QString kActiveDeviceWillFinishInit = QStringLiteral("kDRDCNotification_ActiveDeviceWillFinishInit");
inline const QString kActiveDeviceDidFinishEnumeration =
    QStringLiteral("kDRDCNotification_ActiveDeviceDidFinishEnumeration");

/// A task's progress has changed. At most ten a second of one task, and always one at its end.
inline const QString kTaskDidUpdate = QStringLiteral("kDRDCNotification_DeviceTaskDidUpdateTask");

inline const QString kWillBeginBackup = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginBackup");
inline const QString kDidFinishBackup = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishBackup");
inline const QString kWillBeginBackupDataType = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginBackupDataType");
inline const QString kDidFinishBackupDataType = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishBackupDataType");
inline const QString kWillBeginBackupPacket = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginBackupPacket");
/// Posted only for a packet that was fetched.
inline const QString kDidFinishBackupPacket = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishBackupPacket");

inline const QString kWillBeginRestore = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginRestore");
inline const QString kDidFinishRestore = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishRestore");
inline const QString kWillBeginRestoreDataType = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginRestoreDataType");
inline const QString kDidFinishRestoreDataType = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishRestoreDataType");
inline const QString kWillBeginRestorePacket = QStringLiteral("kDRDCNotification_DeviceTaskWillBeginRestorePacket");
/// Posted only for a packet that was replaced on the phone.
inline const QString kDidFinishRestorePacket = QStringLiteral("kDRDCNotification_DeviceTaskDidFinishRestorePacket");

inline const QString kBackupPacketKey = QStringLiteral("kDRDCNotificationKey_BackupPacket");
inline const QString kBackupDataTypeKey = QStringLiteral("kDRDCNotificationKey_BackupDataType");

} // namespace DRDCNotifications
