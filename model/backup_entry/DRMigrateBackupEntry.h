#pragma once

#include <map>
#include <memory>
#include <mutex>

#include <QString>
#include <QStringList>

#include "model/backup_entry/DRMigrateDataType.h"
#include "platform/device/DRDCDevice.h"

class DRMigrateBackupEntryDelegate;
struct DRMigrateServices;

/// One backup, the iPhone's on disk or the phone's set of packets, with its data types by key. Drives them through
/// their steps and tells its delegate of each that has finished one. Held by shared pointers; called on the main
/// thread.
class DRMigrateBackupEntry : public std::enable_shared_from_this<DRMigrateBackupEntry> {
public:
    /// The fraction done, 0 to 1, and the smoothed estimate of the seconds still needed.
    struct Progress {
        double fraction = 0.0;
        double secondsRemaining = 0.0;
    };

    explicit DRMigrateBackupEntry(const DRMigrateServices& services);
    virtual ~DRMigrateBackupEntry();
    DRMigrateBackupEntry(const DRMigrateBackupEntry&) = delete;
    DRMigrateBackupEntry& operator=(const DRMigrateBackupEntry&) = delete;

    /// The eight data-type keys, in the order in which they are offered and loaded.
    [[nodiscard]] static QStringList allDataTypes();

    /// Adds every key of `allDataTypes`, without a device.
    void addAllDataTypes();

    /// Makes and registers the data types for the key. The base does nothing.
    virtual void addDataType(const QString& key, const DRDCDevicePointer& device);

    /// Registers a data type under a key; null is ignored. Any thread.
    void setDataType(const DRMigrateDataTypePointer& dataType, const QString& key);

    /// The data type under the key; null when there is none or the key is empty. Any thread.
    [[nodiscard]] DRMigrateDataTypePointer dataTypeForKey(const QString& key) const;

    /// The first data type, in ascending key order, that edits this packet; null when there is none.
    [[nodiscard]] DRMigrateDataTypePointer dataTypeForPacketID(const QString& packetID) const;

    /// The keys held, in ascending order.
    [[nodiscard]] QStringList dataTypeKeys() const;

    /// Start loading: all data types, those of the keys in order, one. A key that is not held starts nothing.
    void loadAll();
    void loadDataTypes(const QStringList& keys);
    void loadDataType(const QString& key);

    /// Starts merging the source's data types into this entry's. The base does nothing and answers true.
    virtual bool mergeWithBackup(const DRMigrateBackupEntry& source);

    /// Starts saving all data types. The base does nothing.
    virtual void saveAll();

    /// Whether a data type is still at work, such as after a run that was given up.
    [[nodiscard]] bool isWorking() const;
    [[nodiscard]] bool areAllDataTypesLoaded() const;
    [[nodiscard]] bool areAllDataTypesMerged() const;
    [[nodiscard]] bool areAllDataTypesSaved() const;
    [[nodiscard]] bool doesDataTypesContainErrors() const;

    /// The packet IDs of the data types that decided to leave their packet out of the restore.
    [[nodiscard]] QStringList ignoredPacketIDs() const;

    /// Sums over all data types, in bytes.
    [[nodiscard]] quint64 bytesToTransfer() const;
    [[nodiscard]] quint64 bytesTransferred() const;

    /// Starts the estimate anew, at 1.1 seconds per MiB.
    void beginProgress();

    /// Moves the estimate on by `deltaSeconds` of time spent.
    [[nodiscard]] Progress progressWithDelta(double deltaSeconds);

    /// Tell the delegate that a data type has finished a step.
    void dataTypeHasBeenLoaded(DRMigrateDataType& dataType);
    void dataTypeHasBeenMerged(DRMigrateDataType& dataType);
    void dataTypeHasBeenSaved(DRMigrateDataType& dataType);

    /// Not owned; must be cleared before it goes.
    void setDelegate(DRMigrateBackupEntryDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] DRMigrateBackupEntryDelegate* delegate() const { return m_delegate; }

    /// The directory in which the backup lies.
    [[nodiscard]] const QString& backupPath() const { return m_backupPath; }
    void setBackupPath(const QString& path) { m_backupPath = path; }

protected:
    [[nodiscard]] const DRMigrateServices& services() const { return m_services; }
    [[nodiscard]] std::vector<DRMigrateDataTypePointer> dataTypesInKeyOrder() const;

private:
    const DRMigrateServices& m_services;
    DRMigrateBackupEntryDelegate* m_delegate = nullptr;
    QString m_backupPath;

    mutable std::recursive_mutex m_dataTypesMutex;
    std::map<QString, DRMigrateDataTypePointer> m_dataTypes;

    double m_progressTimeSpent = 0.0;
    double m_progressTimeRemaining = 0.0;
    double m_progressTimePerMegabyte = 0.0;
    double m_progressTimeAcc = 0.0;
};
