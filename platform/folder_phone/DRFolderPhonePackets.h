#pragma once

#include "platform/folder_phone/DRFileContent.h"
#include "platform/folder_phone/DRFolderPhoneRoot.h"
#include "platform/folder_phone/DRStepOutcome.h"

#include <QStringList>

/// The packets of a phone in a folder, and the work on one of them. A plain value, for any thread.
class DRFolderPhonePackets {
public:
    /// The name of a packet's file in the folder that is named after its packet ID.
    static inline const QString kPacketFile = QStringLiteral("fullbackupdata");

    /// `capacityBytes`: what the phone's files may take in all.
    DRFolderPhonePackets(DRFolderPhoneRoot root, quint64 capacityBytes);

    /// The path of a packet's file below a folder of the computer.
    [[nodiscard]] static QString pathBelow(const QString& folder, const QString& packetID);

    /// The IDs of the packets, in ascending order: the names of the folders. One without a packet file is an app that
    /// the phone offers and then fails to back up.
    [[nodiscard]] QStringList offered() const;

    /// Bytes of the phone's packet; 0 when there is none.
    [[nodiscard]] quint64 sizeOnPhone(const QString& packetID) const;

    /// Copies the phone's packet to a new file packetID/"fullbackupdata" below `targetFolder`, which exists. The file
    /// is there whole, and on disk, or not at all.
    [[nodiscard]] DRStepOutcome
    fetch(const QString& packetID, const QString& targetFolder, const DRByteProgress& progress) const;

    /// Replaces the phone's packet by packetID/"fullbackupdata" below `sourceFolder`, or adds it; skipped when there is
    /// no such file. On failure the phone's packet is what it was.
    [[nodiscard]] DRStepOutcome
    restore(const QString& packetID, const QString& sourceFolder, const DRByteProgress& progress) const;

private:
    [[nodiscard]] bool hasRoomFor(const QString& packetID, quint64 bytes) const;

    DRFolderPhoneRoot m_root;
    quint64 m_capacityBytes;
};
