#pragma once

#include <QString>

namespace DRDCFileUtils {

/// The kind (DRMigrateFileKinds.h) of files with this extension, given without its dot, in any letter case. 0 when it is
/// empty or not known.
[[nodiscard]] quint32 fileKindFromFileExtension(const QString& extension);

/// What stands behind the last dot of a file's name; empty when nothing does. A name's first character is no such dot:
/// ".jpg" is a hidden file without an extension.
[[nodiscard]] QString extensionOfName(const QString& name);

} // namespace DRDCFileUtils
