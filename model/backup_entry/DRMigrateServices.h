#pragma once

#include "platform/core/DRUserFolders.h"

class DRBRBackupRestoreController;
class DRClock;
class DRDCDeviceController;
class DRMediaAccessController;
class DRMigrateDataTypeRegistry;
class DRNotificationCenter;
class DRTaskQueue;

/// What every backup entry and data type may call upon. Made once by the program's start and handed down; all of it
/// outlives the entries.
struct DRMigrateServices {
    DRTaskQueue& taskQueue;
    const DRClock& clock;
    DRNotificationCenter& notificationCenter;
    DRDCDeviceController& deviceController;
    DRBRBackupRestoreController& backupRestoreController;
    const DRMediaAccessController& mediaAccessController;
    const DRMigrateDataTypeRegistry& registry;
    DRUserFolders folders;
};
