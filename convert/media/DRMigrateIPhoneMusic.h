#pragma once

#include "model/media/DRMigrateMediaDataType.h"

class DRMusicLibrary;

/// Finds the music of an iPhone on this computer: the backup only tells which playlists the iPhone took, the songs
/// themselves lie in the computer's music library. Entries are `DRDCFilePointer`: the songs in the order of the
/// playlists, one that is in two playlists twice, then the playlists (kind 0x40).
class DRMigrateIPhoneMusic final : public DRMigrateMediaDataType {
public:
    using DRMigrateMediaDataType::DRMigrateMediaDataType;

    /// Takes the playlists whose IDs "Info.plist" of the backup holds, else those of the library that were made by hand
    /// and hold nothing but music. Of these, the songs whose files can be read, and the playlists that have such songs.
    /// The report counts the songs as found, "playlists" beside them, and names the songs whose files are missing.
    ///
    /// False without a backup, without a library and without any playlist; the last two are told as `notAvailable`, since
    /// nothing of the backup is lost. A library that is damaged before its playlists fails and is told as skipped.
    [[nodiscard]] bool load() override;

private:
    [[nodiscard]] QStringList playlistIDsOfBackup() const;
    [[nodiscard]] bool refuse(const DRMusicLibrary& library);
    void take(const std::vector<DRDCFilePointer>& playlists, DRMigrateReport report);
};
