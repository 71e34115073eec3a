#pragma once

#include "app/sample/DRSampleSettings.h"

#include <QString>

/// The name of the music library's file.
[[nodiscard]] QString sampleMusicLibraryName();

/// Writes a music library of a computer into `folder`, which must exist and be empty: 40 songs per unit of scale in
/// "Music/ARTIST/ALBUM/NN TITLE.EXTENSION", and the library's XML file, which says that the songs are in `finalFolder`,
/// an absolute path. The sample's iPhone took two of its playlists. False on failure, which is logged.
[[nodiscard]] bool
writeSampleMusic(const QString& folder, const QString& finalFolder, const DRSampleSettings& settings);
