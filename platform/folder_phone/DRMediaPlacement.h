#pragma once

#include <QString>
#include <QStringList>

class DRDCFile;

/// Where files lie on the phone's storage and what they are called there. Paths and names of foreign origin come in;
/// what comes out never leaves the storage. Values only, no disk.
namespace DRMediaPlacement {

/// Longest name of one file or folder, in bytes of UTF-8.
inline constexpr qsizetype kMaximumNameBytes = 255;

/// The components of a path relative to the storage, each fit to be a name: no "..", no control characters, no invalid
/// text (each such character becomes "_"), none too long. Empty components and "." are left out; the list may be empty.
[[nodiscard]] QStringList safeComponents(const QString& path);

/// Whether the path names exactly what it says: relative, and not changed by `safeComponents`.
[[nodiscard]] bool isSafePath(const QString& path);

/// The name for number 1, "IMG_0001 (2).JPG" for number 2, and so on; shortened before its extension when it is too
/// long.
[[nodiscard]] QString numberedName(const QString& name, int number);

/// Where the phone would put the file by its kind, such as "Pictures/name.jpg". Songs go to "Music/Artist/Album/name.mp3"
/// when artist and album are known, else to "Music/name.mp3"; playlists to "Music/name.m3u", above the songs they name.
[[nodiscard]] QString defaultPath(const DRDCFile& file);

} // namespace DRMediaPlacement
