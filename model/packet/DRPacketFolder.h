#pragma once

#include <vector>

#include <QByteArray>

#include "platform/core/DRFileDescriptor.h"

/// A folder whose files are reached component by component from its descriptor, never through a link, so that whatever
/// lies in it nothing outside is touched. Paths are the components of `safePathComponents`. Failures leave their reason
/// in errno.
class DRPacketFolder {
public:
    /// Opens an existing folder; a link that `path` itself is gets followed. Not open on failure.
    explicit DRPacketFolder(const QString& path);

    /// The folder itself, still owned by this object.
    [[nodiscard]] const DRFileDescriptor& root() const { return m_root; }

    /// Opens a regular file for reading. Not open when there is none.
    [[nodiscard]] DRFileDescriptor openFile(const std::vector<QByteArray>& path);

    /// Makes an empty file, mode 0600, in place of one that is there, with the folders above it. Not open on failure.
    [[nodiscard]] DRFileDescriptor createFile(const std::vector<QByteArray>& path);

    /// Makes the folder, mode 0700, with those above it; one that is there stays. False on failure.
    [[nodiscard]] bool makeFolder(const std::vector<QByteArray>& path);

private:
    enum class Missing { Refused, Made };
    [[nodiscard]] int folderAt(std::vector<QByteArray> path, Missing missing);

    DRFileDescriptor m_root;
    std::vector<QByteArray> m_currentPath; ///< of `m_current`
    DRFileDescriptor
        m_current; ///< the folder that was used last, since neighbours follow each other; not open: the root
};
