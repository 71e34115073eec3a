#pragma once

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateDataTypeRegistry.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "model/media/DRMigrateMediaDataType.h"
#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "tests/support/DRTestAnalytics.h"
#include "tests/support/DRTestClock.h"
#include "tests/support/DRTestDevice.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestTaskQueue.h"
#include "tests/support/DRTestTimerSource.h"
#include "wizard/DRMGSequence.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <map>
#include <memory>

/// What the small data types of these tests do.
struct DataTypeScript {
    std::map<QString, DREntryList> iPhoneEntries;                ///< by data-type key: what the iPhone side finds
    std::map<QString, std::vector<DRMigrateSkippedItem>> losses; ///< the same: what it cannot read
    QStringList failingSteps;                                    ///< such as "load com.android.chrome", "save images"
};

/// A data type whose steps succeed unless the script says otherwise. `Base` is a data type with or without files.
template <typename Base> class ScriptedType : public Base {
public:
    ScriptedType(const DRMigrateServices& services, const DataTypeScript& script) : Base(services), m_script(script) {}

    bool load() override { return succeeds("load "); }
    bool mergeDataFrom(const DRMigrateDataType&) override { return succeeds("merge "); }
    bool save() override { return succeeds("save "); }

protected:
    [[nodiscard]] bool succeeds(const char* step) const
    {
        return !m_script.failingSteps.contains(QLatin1String(step) + this->dataTypeKey());
    }
    [[nodiscard]] const DataTypeScript& script() const { return m_script; }

private:
    const DataTypeScript& m_script;
};

/// An iPhone-side type that finds the entries of the script.
template <typename Base> class IPhoneType final : public ScriptedType<Base> {
public:
    using ScriptedType<Base>::ScriptedType;

    bool load() override
    {
        const auto found = this->script().iPhoneEntries.find(this->dataTypeKey());
        this->setEntries(found == this->script().iPhoneEntries.end() ? DREntryList() : found->second);
        if (const auto lost = this->script().losses.find(this->dataTypeKey()); lost != this->script().losses.end()) {
            this->setReport({.skipped = lost->second});
        }
        return this->succeeds("load ");
    }
};

/// A phone-side media type that copies the files whose kinds are to be transferred; music and memos copy all.
class PhoneMediaType final : public ScriptedType<DRMigrateMediaDataType> {
public:
    using ScriptedType::ScriptedType;

    [[nodiscard]] std::vector<DRDCFilePointer> entriesToTransfer() const override
    {
        return dataTypeKey() == DRMigrateKeys::kImages ? DRMigrateMediaDataType::entriesToTransfer()
                                                       : filesOf(*entries());
    }
    void transferFilesWithTarget(TransferHandler handler) override
    {
        DRMigrateMediaDataType::transferFilesWithTarget(std::move(handler));
        copyEntries(QStringLiteral("copy ") + dataTypeKey(), placementIn(QStringLiteral("Media")));
    }
};

/// A whole wizard over an empty backups folder, with a phone that is there or not.
class WizardFixture {
public:
    explicit WizardFixture(const QString& stringsJson = QStringLiteral("{}"))
    {
        writeFile(folder.filePath(QStringLiteral("en.json")), stringsJson.toUtf8());
        strings =
            DRLocalizedStrings::fromFile(folder.filePath(QStringLiteral("en.json"))).value_or(DRLocalizedStrings());
        registerTypes();
        sequence = DRMGSequence::sequence(context);
    }

    /// Puts the phone in use.
    void connectPhone() { devices.setActiveDevice(device); }

    /// A backup on disk, one day newer than the one before.
    void addBackup(const QString& deviceName, const QString& version = QStringLiteral("6.1.3"))
    {
        const QString backup = folder.filePath(QStringLiteral("backups/backup%1").arg(++m_backupCount));
        const QString plist =
            QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                           "<key>Device Name</key><string>%1</string><key>Product Version</key><string>%2</string>"
                           "<key>Last Backup Date</key><date>2014-05-%3T00:00:00Z</date></dict></plist>")
                .arg(deviceName, version)
                .arg(m_backupCount, 2, 10, QLatin1Char('0'));
        writeFile(backup + QStringLiteral("/Info.plist"), plist.toUtf8());
    }

    /// An entry as discovery would make it, not on disk.
    [[nodiscard]] DRMigrateIPhoneBackupEntryPointer makeEntry(const QString& version = QStringLiteral("6.1.3"),
                                                              bool encrypted = false) const
    {
        auto entry = std::make_shared<DRMigrateIPhoneBackupEntry>(services);
        entry->setProductVersion(version);
        entry->setProductType(QStringLiteral("iPhone4,1"));
        entry->setEncrypted(encrypted);
        return entry;
    }

    /// Chooses a loaded entry and these kinds, as the pages before the transfer do.
    void choose(const QStringList& selectedTypes)
    {
        const auto entry = makeEntry();
        entry->addAllDataTypes();
        entry->loadAll();
        queue.runAll();
        sequence->parameters().setValue(DRMGSequence::kIPhoneBackupEntry, entry);
        sequence->parameters().setValue(DRMGSequence::kSelectedTypes, selectedTypes);
    }

    /// A file of this kind and size.
    [[nodiscard]] static DRDCFilePointer file(quint32 kind, quint64 size)
    {
        auto made = DRDCFile::fileWithSourcePath(QStringLiteral("/missing/file%1.bin").arg(kind));
        made->setFileKind(kind);
        made->setFilesize(size);
        return made;
    }

    [[nodiscard]] QString currentKey() const
    {
        return sequence->currentStep() == nullptr ? QString() : sequence->currentStep()->key();
    }

    QTemporaryDir folder;
    DRTestTaskQueue queue;
    DRTestClock clock;
    DRNotificationCenter center;
    DRDCDeviceController devices{center};
    DRBRBackupRestoreController backupRestore{folder.filePath(QStringLiteral("phone-backups"))};
    DRMediaAccessController mediaAccess{QString()};
    DRMigrateDataTypeRegistry registry;
    DataTypeScript script;
    DRMigrateServices services{.taskQueue = queue,
                               .clock = clock,
                               .notificationCenter = center,
                               .deviceController = devices,
                               .backupRestoreController = backupRestore,
                               .mediaAccessController = mediaAccess,
                               .registry = registry,
                               .folders = {.applicationSupport = {},
                                           .data = {},
                                           .temporary = folder.filePath(QStringLiteral("work")),
                                           .state = {},
                                           .music = {}}};
    DRTestAnalytics analytics;
    DRLocalizedStrings strings;
    DRSequenceResourceManager resources;
    DRTestTimerSource timers;
    DRMGContext context{.services = services,
                        .analytics = analytics,
                        .strings = strings,
                        .resources = resources,
                        .timers = timers,
                        .backupsFolder = folder.filePath(QStringLiteral("backups")),
                        .applicationVersion = QStringLiteral("9.8")};
    std::shared_ptr<DRTestDevice> device = std::make_shared<DRTestDevice>(center);
    std::unique_ptr<DRMGSequence> sequence;

private:
    static void writeFile(const QString& path, const QByteArray& bytes)
    {
        if (!::writeFile(path, bytes)) {
            qFatal("cannot write a file of the test");
        }
    }

    template <typename Type> [[nodiscard]] DRMigrateDataTypeRegistry::Factory maker() const
    {
        return [this](const DRMigrateServices& with) { return std::make_shared<Type>(with, script); };
    }

    void registerTypes()
    {
        using namespace DRMigrateKeys;
        for (const QString& key : {kContacts, kTextMessages, kNotes, kCalendar, kBookmarks}) {
            registry.registerIPhoneType(key, maker<IPhoneType<DRMigrateDataType>>());
        }
        for (const QString& key : {kImages, kMusic, kVoiceMemos}) {
            registry.registerIPhoneType(key, maker<IPhoneType<DRMigrateMediaDataType>>());
            registry.registerMediaType(key, maker<PhoneMediaType>());
        }
        for (const QString& packetID : {kContactsImportPacket, kPhonebookPacket, kTelephonyPacket, kNotesPacket}) {
            registry.registerPacketType(packetID, maker<ScriptedType<DRMigrateDataType>>());
        }
    }

    int m_backupCount = 0;
};
