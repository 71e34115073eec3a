#pragma once

#include <memory>

#include <QDateTime>

#include "model/backup_entry/DRMigrateBackupEntry.h"

/// A backup of an iPhone in a folder, as its property lists describe it, with the data types that read it.
class DRMigrateIPhoneBackupEntry final : public DRMigrateBackupEntry {
public:
    using DRMigrateBackupEntry::DRMigrateBackupEntry;

    /// Makes and registers the reader for the key; an unknown key makes nothing. The device is not used.
    void addDataType(const QString& key, const DRDCDevicePointer& device) override;

    /// The number before the first dot of `productVersion`: 6 for "6.1.3"; 0 when there is none.
    [[nodiscard]] int majorProductVersion() const;

    /// Orders by `lastBackupDate`, the newest first.
    [[nodiscard]] static bool sortOnDate(const std::shared_ptr<DRMigrateIPhoneBackupEntry>& one,
                                         const std::shared_ptr<DRMigrateIPhoneBackupEntry>& other);

    /// Bytes that the selected kinds need on the phone: the sizes of the files of media kinds (which must have been
    /// loaded), and 1 MiB for each other key.
    [[nodiscard]] quint64 bytesNeededForSelectedTypes(const QStringList& keys) const;

    /// Whether it can be migrated from: not encrypted, and made by system version 4 or later.
    [[nodiscard]] bool isUsable() const { return !isEncrypted() && majorProductVersion() > 3; }

    // From Info.plist; null when the key is missing or not of this type.
    [[nodiscard]] const QString& deviceName() const { return m_deviceName; }
    void setDeviceName(const QString& name) { m_deviceName = name; }
    [[nodiscard]] const QString& displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }
    [[nodiscard]] const QString& guid() const { return m_guid; }
    void setGuid(const QString& guid) { m_guid = guid; }
    [[nodiscard]] const QString& imei() const { return m_imei; }
    void setImei(const QString& imei) { m_imei = imei; }
    [[nodiscard]] const QString& serialNumber() const { return m_serialNumber; }
    void setSerialNumber(const QString& number) { m_serialNumber = number; }
    [[nodiscard]] const QString& productType() const { return m_productType; }
    void setProductType(const QString& type) { m_productType = type; }
    [[nodiscard]] const QString& productVersion() const { return m_productVersion; }
    void setProductVersion(const QString& version) { m_productVersion = version; }
    [[nodiscard]] const QString& iTunesVersion() const { return m_iTunesVersion; }
    void setITunesVersion(const QString& version) { m_iTunesVersion = version; }
    [[nodiscard]] const QDateTime& lastBackupDate() const { return m_lastBackupDate; }
    void setLastBackupDate(const QDateTime& date) { m_lastBackupDate = date; }

    // From Manifest.plist; false when it is missing.
    [[nodiscard]] bool isEncrypted() const { return m_encrypted; }
    void setEncrypted(bool encrypted) { m_encrypted = encrypted; }

private:
    QString m_deviceName;
    QString m_displayName;
    QString m_guid;
    QString m_imei;
    QString m_serialNumber;
    QString m_productType;
    QString m_productVersion;
    QString m_iTunesVersion;
    QDateTime m_lastBackupDate;
    bool m_encrypted = false;
};

using DRMigrateIPhoneBackupEntryPointer = std::shared_ptr<DRMigrateIPhoneBackupEntry>;
