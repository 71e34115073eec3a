#pragma once

#include <QStringList>

class DRFileDescriptor;
class DRMutableAbstractData;

/// Takes boxes out of videos. The outcome is that of removing the first box at the first path and reading the file
/// again until none is left, then the same for each further path; it takes one pass.
namespace DRVideoBoxes {

enum class Outcome {
    Removed,   ///< boxes were found and are gone
    NoneFound, ///< there is nothing to remove
    NotRead,   ///< no well-formed MP4 or QuickTime file: nothing is removed
    TooMany,   ///< far more boxes than any video has: nothing is removed
    Failed,    ///< the source cannot be opened or read, or copying came to no end
};

/// What the players of old phones stumble over: the film's user data, and the second "mp4a" that QuickTime keeps in the
/// description of the sound.
[[nodiscard]] QStringList pathsForOldPhones();

/// Removes all boxes at the paths. Unless the outcome is `Removed`, the data is as it was.
[[nodiscard]] Outcome removeBoxes(DRMutableAbstractData& data, const QStringList& paths);

/// Whether a regular file (never through a link) has boxes at the paths: `Removed` when `writeWithoutBoxes` would
/// remove some, otherwise what it would answer.
[[nodiscard]] Outcome wouldRemove(const QString& source, const QStringList& paths);

/// Copies a regular file (never through a link) without the boxes at the paths, in bounded memory whatever its size and
/// what it holds, letting the file system share blocks where it can. `target` is an empty file open for writing, not
/// for appending. For every outcome but `Failed` it holds the whole video, unchanged unless `Removed`; after `Failed`
/// it holds a useless part. It is not flushed.
[[nodiscard]] Outcome
writeWithoutBoxes(const QString& source, const DRFileDescriptor& target, const QStringList& paths);

} // namespace DRVideoBoxes
