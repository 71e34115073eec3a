#pragma once

#include <QtGlobal>

/// The kinds of media files, as bits of `DRDCFile::fileKind`.
namespace DRMigrateFileKinds {

inline constexpr quint32 kMusic = 0x04;
inline constexpr quint32 kFilms =
    0x08; ///< videos of the family that phones record: MP4, QuickTime and 3GPP, which consist of boxes
inline constexpr quint32 kPhotos = 0x10;
inline constexpr quint32 kOtherVideos = 0x20; ///< videos of any other build
inline constexpr quint32 kVideos = kFilms | kOtherVideos;
inline constexpr quint32 kPlaylist = 0x40;

} // namespace DRMigrateFileKinds
