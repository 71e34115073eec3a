#pragma once

#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "tests/support/DRTestClock.h"
#include "tests/support/DRTestTaskQueue.h"

#include <QTemporaryDir>

/// Everything that entries and data types call upon, deterministic, with its folders in a temporary one.
struct DRTestServices {
    QTemporaryDir root;
    DRTestTaskQueue queue;
    DRTestClock clock;
    DRNotificationCenter notifications;
    DRDCDeviceController deviceController{notifications};
    DRBRBackupRestoreController backupRestoreController{root.filePath(QStringLiteral("phone-backups"))};
    QString musicLibrary = root.filePath(QStringLiteral("music/Library.xml")); ///< empty: the computer has none
    DRMediaAccessController mediaAccessController{musicLibrary};
    DRMigrateDataTypeRegistry registry;
    DRMigrateServices services{.taskQueue = queue,
                               .clock = clock,
                               .notificationCenter = notifications,
                               .deviceController = deviceController,
                               .backupRestoreController = backupRestoreController,
                               .mediaAccessController = mediaAccessController,
                               .registry = registry,
                               .folders = {.applicationSupport = root.filePath(QStringLiteral("support")),
                                           .data = root.filePath(QStringLiteral("data")),
                                           .temporary = root.filePath(QStringLiteral("temporary")),
                                           .state = root.filePath(QStringLiteral("state")),
                                           .music = root.filePath(QStringLiteral("music"))}};
};
