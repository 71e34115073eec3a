#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <QString>
#include <QStringList>

/// Opens files and folders one name at a time below an open folder, never through a link. A name is one path component
/// without NUL. What fails answers a descriptor that is not open, with the cause in `errno`.
namespace DRNoFollow {

/// A regular file, for reading; anything else is refused with EINVAL. Its time of last access is left alone where the
/// system permits.
[[nodiscard]] DRFileDescriptor openFile(const DRFileDescriptor& folder, const QString& name);

[[nodiscard]] DRFileDescriptor openFolder(const DRFileDescriptor& folder, const QString& name);
[[nodiscard]] DRFileDescriptor openFolder(const QString& path);

/// Makes the folder with mode 0700 when it is missing.
[[nodiscard]] DRFileDescriptor openOrMakeFolder(const DRFileDescriptor& folder, const QString& name);

/// Walks down a list of names.
[[nodiscard]] DRFileDescriptor openFolders(const DRFileDescriptor& top, const QStringList& names);
[[nodiscard]] DRFileDescriptor openOrMakeFolders(const DRFileDescriptor& top, const QStringList& names);

/// Bytes of an open file; 0 when it cannot be told.
[[nodiscard]] quint64 sizeOf(const DRFileDescriptor& file);

} // namespace DRNoFollow
