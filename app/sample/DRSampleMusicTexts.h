#pragma once

#include <QString>

#include <vector>

/// A made-up song of a music library.
struct DRSampleSong {
    enum class Format { Lossless, Mp3, Wave };

    QString title;
    QString artist;
    QString album;
    QString genre;
    int year = 0;
    int number = 0; ///< in its album, from 1
    int count = 0;  ///< of the album's songs
    Format format = Format::Lossless;
};

/// A made-up playlist of every so many songs of a music library.
struct DRSamplePlaylist {
    enum class Kind {
        Master,  ///< everything there is
        BuiltIn, ///< one that each library has
        Smart,   ///< kept by a rule
        Taken,   ///< made by hand, and taken by the iPhone
    };

    QString name;
    Kind kind = Kind::Taken;
    quint64 persistentId = 0; ///< often above 2^63
    int every = 1;
    int from = 0; ///< the first song, from 0
};

/// Reads texts/music.json: 40 songs by 6 artists per unit of scale, from the second unit on in albums of other names.
[[nodiscard]] std::vector<DRSampleSong> sampleSongs(int scale);

/// Reads texts/music.json: the playlists of the computer's library.
[[nodiscard]] std::vector<DRSamplePlaylist> samplePlaylists();
