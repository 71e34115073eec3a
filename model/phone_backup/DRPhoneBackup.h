#pragma once

#include <vector>

#include <QDateTime>
#include <QString>
#include <QStringList>

/// One backup of a phone's apps as it lies on this computer: what its description tells, and what is really there.
///
///     <folder>/BackupData.plist                  the description
///     <folder>/<packet ID>/fullbackupdata        one app's packet, as the phone gave it
///
/// Backups are never changed once they are made. See docs/formats/phone-backup.md.
struct DRPhoneBackup {
    /// The packet of one app that the description names.
    struct App {
        QString packetID;
        quint64 sizeBytes = 0;
        bool isThere = false; ///< whether there is a packet file; the phone may have failed to give it
        QString problem; ///< what its header says against it, as the second half of a sentence; null when all is well
    };

    enum class State {
        Whole,
        Incomplete,            ///< the packet of an app is missing
        Damaged,               ///< the packet of an app cannot be read
        Empty,                 ///< no packet at all
        NoDescription,         ///< nothing tells what it is
        UnreadableDescription, ///< or not in a way that can be understood
    };

    QString path;            ///< of the folder
    QString name;            ///< that it was given when it was made; may be empty
    QDateTime date;          ///< when it was made, in whole seconds; null when unknown
    QString phoneName;       ///< as the phone is sold; may be empty
    QString phoneIdentifier; ///< `DRDCDevice::identifier` of the phone; empty only without a description
    std::vector<App> apps;   ///< in the order of work, each once
    State state = State::NoDescription;

    /// What lies in the folder. Reads the description and the header of each packet; whether the packets can be read to
    /// their end is `packetFingerprint`'s to tell.
    [[nodiscard]] static DRPhoneBackup ofFolder(const QString& folder);

    /// Those in `phoneBackupsFolder`/<phone>/<date>, the newest first, those of unknown date last. Every folder counts,
    /// also one that holds no backup: it may be what is left of one.
    [[nodiscard]] static std::vector<DRPhoneBackup> allBelow(const QString& phoneBackupsFolder);

    /// Why it is not whole, for a person; null when it is.
    [[nodiscard]] QString problem() const;

    /// Whether something of it can be put back.
    [[nodiscard]] bool isUsable() const;

    [[nodiscard]] quint64 sizeBytes() const;

    /// Where the packet of an app lies in the folder of a phone backup.
    [[nodiscard]] static QString pathOfPacket(const QString& folder, const QString& packetID);
    [[nodiscard]] QString pathOfPacket(const QString& packetID) const { return pathOfPacket(path, packetID); }
};
