#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

class DRDCDevice;

/// Knows which app packets hold which kind of data, in which order they are worked on, and where phone backups are
/// kept.
class DRBRBackupRestoreController {
public:
    /// `phoneBackupsFolder`: where the computer keeps backups of phones, one folder per phone and date.
    explicit DRBRBackupRestoreController(QString phoneBackupsFolder);

    /// The packet IDs that hold the data of this kind (a data-type key), in a fixed order, less those that are not in
    /// `supported` (the packets that the phone offers). Empty for kinds that are not kept in app packets. Every
    /// revision of the phone's backup software (`deviceVersion`) uses the same packets so far.
    [[nodiscard]] QStringList
    packetIDsForDataType(const QString& key, const QStringList& supported, const QString& deviceVersion) const;

    /// A folder for a new backup of this phone at this moment: phone backups / device identifier / date and time, with
    /// " (2)" and so on appended while the name is taken. Nothing is created.
    [[nodiscard]] QString pathToBackupFolderWithDevice(const DRDCDevice& device, const QDateTime& date) const;

    /// The order in which packets are backed up and restored, as data-type keys.
    [[nodiscard]] QStringList dataTypesDefaultSortOrder() const;

    /// The data-type key whose content the packet holds; empty for a packet that this program does not know.
    [[nodiscard]] static QString dataTypeOfPacket(const QString& packetID);

    /// Whether an app can be called so: letters, digits and underscores in parts joined by dots. Such a name is never
    /// "..", hidden or a path.
    [[nodiscard]] static bool isPacketID(const QString& name);

private:
    QString m_phoneBackupsFolder;
};
