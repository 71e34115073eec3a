#pragma once

#include <optional>

#include <QString>
#include <QTemporaryDir>

#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "platform/analytics/DRLocalAnalytics.h"
#include "platform/core/DRClock.h"
#include "platform/core/DREventLoopTimerSource.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRPrivateFolder.h"
#include "platform/core/DRThreadPoolTaskQueue.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "wizard/DRMGContext.h"

/// What a person chose before the program starts its work. Empty means not chosen.
struct DRMigrateStartupOptions {
    QString backupsFolder; ///< where iPhone backups are looked for, instead of the user's default folder
    QString phoneFolder;   ///< the folder of a phone kept on disk
    QString musicLibrary;  ///< the computer's music library, an XML file, instead of the user's own

    /// From PHONE_MIGRATE_BACKUPS, PHONE_MIGRATE_PHONE and PHONE_MIGRATE_MUSIC.
    [[nodiscard]] static DRMigrateStartupOptions fromEnvironment();
};

/// Where everything that the program shares is made, once, and handed down: queue, clock, timers, notification centre,
/// the converters, the device layer, texts. Made on the main thread, after the application object; its end waits for
/// background tasks that already run.
class DRMigrateStartup {
public:
    explicit DRMigrateStartup(DRMigrateStartupOptions options);
    DRMigrateStartup(const DRMigrateStartup&) = delete;
    DRMigrateStartup& operator=(const DRMigrateStartup&) = delete;
    ~DRMigrateStartup();

    [[nodiscard]] const DRMigrateStartupOptions& options() const { return m_options; }
    [[nodiscard]] const DRUserFolders& folders() const { return m_folders; }
    [[nodiscard]] const DRClock& clock() const { return m_clock; }

    /// The folder in which iPhone backups are looked for, absolute and, when it exists, without links. Empty when the
    /// user has none.
    [[nodiscard]] QString backupsFolder() const;

    /// The file in which transfers are remembered, so that none is repeated unasked.
    [[nodiscard]] QString ledgerPath() const { return m_folders.data + QStringLiteral("/transfers.json"); }

    /// The folder in which this computer keeps backups of phones; made with the first of them.
    [[nodiscard]] QString phoneBackupsFolder() const { return m_folders.data + QStringLiteral("/phone-backups"); }

    [[nodiscard]] const DRMigrateServices& services() const { return m_services; }

    /// The same services, with temporary files in a folder of their own, so that they neither meet those of a transfer
    /// that runs at the same time nor leave anything behind.
    [[nodiscard]] const DRMigrateServices& scratchServices();

    /// Removes the folder of `scratchServices`; for an end that does not wait for background tasks.
    void discardScratch();

    /// Makes and locks the working folder until this object goes. None when that is done, else why it is refused.
    [[nodiscard]] std::optional<DRPrivateFolder::Refusal> lockWorkingFolder();

    /// Waits for background tasks that already run and drops all others; nothing runs in the background any more.
    void endBackgroundWork() { m_taskQueue.end(); }

    /// What the wizard's steps work with. Opens the usage log, so ask only when a wizard is to run.
    [[nodiscard]] DRMGContext context();

    /// Opens the chosen phone and puts it in use. Null when none was chosen or the folder is no phone.
    DRDCDevicePointer openPhone();

    /// Opens another phone and puts it in use. Null, with the one before still in use, when the folder is no phone.
    DRDCDevicePointer changePhone(const QString& folder);

private:
    [[nodiscard]] DRDCDevicePointer phoneIn(const QString& folder);

    DRMigrateStartupOptions m_options;
    DRUserFolders m_folders;
    DRSystemClock m_clock;
    DREventLoopTimerSource m_timers;
    DRNotificationCenter m_notificationCenter;
    DRMigrateDataTypeRegistry m_registry;
    DRDCDeviceController m_deviceController;
    DRBRBackupRestoreController m_backupRestoreController;
    DRMediaAccessController m_mediaAccessController;
    DRLocalizedStrings m_strings;
    DRSequenceResourceManager m_resources;
    std::optional<DRLocalAnalytics> m_analytics;
    DRMigrateServices m_services;
    std::optional<QTemporaryDir> m_scratch;
    std::optional<DRMigrateServices> m_scratchServices;
    std::optional<DRPrivateFolder> m_workingFolder;
    DRThreadPoolTaskQueue m_taskQueue; ///< goes first, and waits: its tasks use what stands above
};
