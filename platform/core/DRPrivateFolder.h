#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <QString>

#include <variant>

/// A folder of this program alone, held for one run: made with mode 0700, checked to be ours, and locked against other
/// runs. The lock ends with the object, or with the process however it ends.
class DRPrivateFolder {
public:
    /// Why a folder is refused; `message` tells a person what was found and what to do.
    struct Refusal {
        enum class Reason { NotOurs, InUse, CannotCreate };
        Reason reason;
        QString message;
    };

    /// Opens (making it when missing) and locks the folder. Refused: a link or other non-folder, another owner, a mode
    /// that lets others in, and the same for a subfolder `contents` when it exists; a folder that another run has
    /// locked.
    [[nodiscard]] static std::variant<DRPrivateFolder, Refusal> lock(const QString& path, const QString& contents);

    /// Makes the folder with mode 0700, with the folders above it. False when it cannot be made; an existing one is
    /// left as is.
    [[nodiscard]] static bool make(const QString& path);

private:
    explicit DRPrivateFolder(DRFileDescriptor lock);

    DRFileDescriptor m_lock;
};
