#pragma once

class DRDiskReserve;
class DRPacketFolder;
class DRTarReader;

/// What became of an archive's entries.
struct DRExtraction {
    bool isWritten =
        true; ///< false when something could not be written (the log says why), or the disk's reserve would be used up
    int leftOutCount = 0;   ///< entries that are no files or folders, or whose path is not safe
    bool isDamaged = false; ///< the archive could not be read to its end; what came before was extracted
};

/// Extracts the archive's regular files and folders into the folder, in the archive's order; a later entry replaces an
/// earlier one. Left out are entries of other types, those whose path is absolute, has "..", is too long or goes
/// through a file, and "expandBackup.tar".
[[nodiscard]] DRExtraction extractArchive(DRTarReader& reader, DRPacketFolder& folder, DRDiskReserve& reserve);
