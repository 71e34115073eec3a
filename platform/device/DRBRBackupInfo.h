#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// The description of one phone backup: where it lies, what it holds, what made it.
class DRBRBackupInfo {
public:
    void setTargetPath(const QString& folder) { m_targetPath = folder; }
    void setBackupDate(const QDateTime& date) { m_backupDate = date; }
    void setBackupName(const QString& name) { m_backupName = name; }
    void setDeviceSoftwareVersion(const QString& version) { m_deviceSoftwareVersion = version; }
    void setApplicationSoftwareVersion(const QString& version) { m_applicationSoftwareVersion = version; }
    void addPacketsToBackup(const QStringList& packetIDs) { m_packetIDs += packetIDs; }

    /// The folder that holds, or will hold, packet ID/"fullbackupdata" for each packet.
    [[nodiscard]] const QString& targetPath() const { return m_targetPath; }
    [[nodiscard]] const QDateTime& backupDate() const { return m_backupDate; }
    [[nodiscard]] const QString& backupName() const { return m_backupName; }
    [[nodiscard]] const QString& deviceSoftwareVersion() const { return m_deviceSoftwareVersion; }
    [[nodiscard]] const QString& applicationSoftwareVersion() const { return m_applicationSoftwareVersion; }
    [[nodiscard]] const QStringList& packetIDs() const { return m_packetIDs; }

private:
    QString m_targetPath;
    QDateTime m_backupDate;
    QString m_backupName;
    QString m_deviceSoftwareVersion;
    QString m_applicationSoftwareVersion;
    QStringList m_packetIDs;
};
