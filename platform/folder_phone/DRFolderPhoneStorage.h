#pragma once

#include "platform/folder_phone/DRFileContent.h"
#include "platform/folder_phone/DRFolderPhoneRoot.h"
#include "platform/folder_phone/DRStepOutcome.h"
#include "platform/folder_phone/DRTakenNames.h"

#include <optional>

#include <QHash>
#include <QSet>
#include <QString>

class DRDCFile;

/// The shared storage of a phone in a folder while one task works on it; one thread at a time.
///
/// Files are not flushed to disk one by one: their originals stay on the computer.
class DRFolderPhoneStorage {
public:
    /// `capacityBytes`: what the phone's files may take in all.
    DRFolderPhoneStorage(DRFolderPhoneRoot root, quint64 capacityBytes);

    /// Copies the file, or what its processor makes of it, to `targetPath` below the storage, made safe, with the
    /// folders that are missing and the time of last change. A different file of that name is left alone and the next
    /// free name taken; when a file of these names has the same bytes, nothing is copied and all is well. The outcome tells where the file lies then.
    [[nodiscard]] DRStepOutcome copy(const DRDCFile& file, const QString& targetPath, const DRByteProgress& progress);

    /// Removes a file of the storage. One that is not there is no failure; a folder, or a path that could lead
    /// elsewhere, is.
    [[nodiscard]] DRStepOutcome remove(const QString& path) const;

private:
    /// An open folder of the storage and a name in it.
    struct Goal {
        const DRFileDescriptor& folder;
        const QString& name;
        DRTakenNames& taken;
    };

    [[nodiscard]] DRStepOutcome place(const Goal& goal, const DRFileDescriptor& source, const DRByteProgress& progress);
    [[nodiscard]] bool hasRoomFor(quint64 bytes);

    DRFolderPhoneRoot m_root;
    quint64 m_capacityBytes;
    std::optional<quint64> m_usedBytes;   ///< counted once, then kept
    QHash<QString, DRTakenNames> m_taken; ///< by path below the storage
    QSet<QString> m_cleanFolders;         ///< in which no leftovers of interrupted copies are any more
};
