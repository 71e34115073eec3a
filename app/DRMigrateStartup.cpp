#include "app/DRMigrateStartup.h"

#include "convert/DRMigrateConverters.h"
#include "model/iphone_backup/DRMigrateBackupDiscovery.h"
#include "platform/core/DRLog.h"
#include "platform/folder_phone/DRFolderPhone.h"

#include <QFileInfo>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

DRMigrateDataTypeRegistry filledRegistry()
{
    DRMigrateDataTypeRegistry registry;
    registerMigrateConverters(registry);
    return registry;
}

DRLocalizedStrings builtInTexts()
{
    auto texts = DRLocalizedStrings::fromFolder(u":/migrate/texts"_s, QLocale().uiLanguages());
    if (!texts) {
        qCWarning(lcMigrate) << "the program's texts cannot be read";
        return {};
    }
    return std::move(*texts);
}

} // namespace

DRMigrateStartupOptions DRMigrateStartupOptions::fromEnvironment()
{
    return {
        .backupsFolder = qEnvironmentVariable("PHONE_MIGRATE_BACKUPS"),
        .phoneFolder = qEnvironmentVariable("PHONE_MIGRATE_PHONE"),
        .musicLibrary = qEnvironmentVariable("PHONE_MIGRATE_MUSIC"),
    };
}

DRMigrateStartup::DRMigrateStartup(DRMigrateStartupOptions options)
    : m_options(std::move(options)),
      m_folders(DRUserFolders::ofCurrentUser()),
      m_registry(filledRegistry()),
      m_deviceController(m_notificationCenter),
      m_backupRestoreController(phoneBackupsFolder()),
      m_mediaAccessController(m_options.musicLibrary.isEmpty() ? DRMediaAccessController::defaultLibraryPath(m_folders)
                                                               : m_options.musicLibrary),
      m_strings(builtInTexts()),
      m_services{m_taskQueue,
                 m_clock,
                 m_notificationCenter,
                 m_deviceController,
                 m_backupRestoreController,
                 m_mediaAccessController,
                 m_registry,
                 m_folders}
{
}

DRMigrateStartup::~DRMigrateStartup() = default;

QString DRMigrateStartup::backupsFolder() const
{
    const QString chosen = m_options.backupsFolder.isEmpty() ? DRMigrateUtils::iPhoneDefaultBackupPath(m_folders)
                                                             : m_options.backupsFolder;
    if (chosen.isEmpty()) {
        return {};
    }
    const QFileInfo folder(chosen);
    const QString canonical = folder.canonicalFilePath();
    return canonical.isEmpty() ? folder.absoluteFilePath() : canonical;
}

const DRMigrateServices& DRMigrateStartup::scratchServices()
{
    if (!m_scratchServices) {
        m_scratch.emplace();
        m_scratchServices.emplace(m_services);
        m_scratchServices->folders.temporary = m_scratch->path();
    }
    return *m_scratchServices;
}

void DRMigrateStartup::discardScratch()
{
    if (m_scratch) {
        m_scratch->remove();
    }
}

std::optional<DRPrivateFolder::Refusal> DRMigrateStartup::lockWorkingFolder()
{
    auto locked = DRPrivateFolder::lock(m_folders.temporary, u"TarvexTransfer"_s);
    if (auto* refusal = std::get_if<DRPrivateFolder::Refusal>(&locked)) {
        return std::move(*refusal);
    }
    m_workingFolder.emplace(std::move(std::get<DRPrivateFolder>(locked)));
    return std::nullopt;
}

DRMGContext DRMigrateStartup::context()
{
    if (!m_analytics) {
        m_analytics.emplace(m_folders.state + u"/usage.log"_s, m_clock);
    }
    return {
        .services = m_services,
        .analytics = *m_analytics,
        .strings = m_strings,
        .resources = m_resources,
        .timers = m_timers,
        .backupsFolder = backupsFolder(),
        .applicationVersion = QStringLiteral(MIGRATE_VERSION),
        .supportAddress = QStringLiteral(MIGRATE_SUPPORT_ADDRESS),
        .ledgerPath = {}, // the command line keeps its own
    };
}

DRDCDevicePointer DRMigrateStartup::openPhone()
{
    if (m_options.phoneFolder.isEmpty()) {
        return nullptr;
    }
    DRDCDevicePointer phone = phoneIn(m_options.phoneFolder);
    m_deviceController.setActiveDevice(phone);
    return phone;
}

DRDCDevicePointer DRMigrateStartup::changePhone(const QString& folder)
{
    DRDCDevicePointer phone = phoneIn(folder);
    if (phone) {
        m_deviceController.setActiveDevice(phone);
    }
    return phone;
}

DRDCDevicePointer DRMigrateStartup::phoneIn(const QString& folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    auto phone = canonical.isEmpty() ? nullptr : DRFolderPhone::open(canonical, m_taskQueue, m_notificationCenter);
    if (phone) {
        phone->countInBackground();
    }
    return phone;
}
