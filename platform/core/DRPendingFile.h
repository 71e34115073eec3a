#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include "platform/core/DRFileDescriptor.h"

/// A long file on its way: written under a temporary name beside its place, where it appears whole or not at all.
class DRPendingFile {
public:
    /// Removes the temporary files that interrupted programs left in the folder. Nobody else may be writing there.
    static void removeLeftovers(const QString& folder);

    /// Makes the temporary file, mode 0600, readable and writable. `target` need not exist.
    explicit DRPendingFile(const QString& target);

    /// Removes the temporary file unless it was published.
    ~DRPendingFile();
    Q_DISABLE_COPY_MOVE(DRPendingFile)

    /// Not open when it could not be made.
    [[nodiscard]] const DRFileDescriptor& file() const { return m_file; }

    /// The file's path until it is published.
    [[nodiscard]] QString temporaryPath() const;

    /// Renames the file over `target`. False on failure, which is logged, with `target` as it was.
    [[nodiscard]] bool publish();

private:
    QByteArray m_target;
    QByteArray m_temporary;
    DRFileDescriptor m_file;
    bool m_isPublished = false;
};
