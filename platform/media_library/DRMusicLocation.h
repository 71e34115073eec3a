#pragma once

#include <QString>

/// What a track's "Location" in the library file says. Values only, no disk.
namespace DRMusicLocation {

/// What the track's flags say that it is.
enum class Flavour { Music, Video, Spoken };

/// The file of this computer that the URL names: "file:///..." or "file://localhost/...", percent-decoded. Empty for
/// what is no file here: an empty URL, another host or scheme, a path of Windows, a path with a NUL.
[[nodiscard]] QString localPath(const QString& location);

/// The file kind (DRMigrateFileKinds.h) of a track at such a path, by its extension and its flags; 0 for what is none of
/// them, such as booklets and podcasts, never that of a playlist. A file counts as music only by its extension, whatever
/// the library calls it, so that a library of somebody else cannot pass a person's private files off as songs. A track
/// without a file here is music that is missing.
[[nodiscard]] quint32 fileKind(const QString& path, Flavour flavour);

} // namespace DRMusicLocation
