#pragma once

#include <optional>

#include <QByteArray>
#include <QString>
#include <QStringList>

class DRDatabase;

/// The codec of app packets and the folders that packets and media go through. Keeps no state; different packets may be
/// worked on at the same time. See docs/formats/packet.md for the packet format.
namespace DRMigrateUtils {

/// Expands a packet file into `targetDirectory`, which is emptied first (made when missing) once the packet's header
/// has been accepted. "expandBackup.tar", the archive inside the packet, is kept there. Only regular files and folders
/// are extracted, as ours, mode 0600 and 0700; entries of other types or with absolute or ".." paths are left out,
/// nothing outside `targetDirectory` is touched. False: unreadable file, foreign or encrypted header, damaged or
/// truncated compression (the directory is left empty), full disk. A damaged archive inside is no failure: what can be
/// read is extracted; the test for the app's manifest that follows catches it.
[[nodiscard]] bool expandAndroidBackupPacket(const QString& packet, const QString& targetDirectory);

/// The same, telling also what an expanded packet has lost.
struct PacketExpansion {
    bool isExpanded = false; ///< what `expandAndroidBackupPacket` answers
    bool isDamaged = false;  ///< the archive could not be read to its end
    int leftOutCount = 0;    ///< entries that were left out
};
[[nodiscard]] PacketExpansion expandPacket(const QString& packet, const QString& targetDirectory);

/// Packs `filesToInclude` (paths relative to `directory`, names as `DRFileNames` makes them) into the packet file `targetFile`, keeping the archive as
/// `directory`/"compressBackup.tar". Manifests come first, then names in ascending order of bytes; files with a name or
/// folder that begins with a dot are left out. The written packet is read back and compared before it replaces
/// `targetFile`. False when a file cannot be read, the disk is full or the comparison fails; `targetFile` then is what
/// it was before.
[[nodiscard]] bool
compressAndroidBackupPacket(const QString& directory, const QStringList& filesToInclude, const QString& targetFile);

/// The regular files below `packetFolder`/"apps", as paths relative to `packetFolder` that begin with "apps/", with names as
/// `DRFileNames` makes them, in the order in which the file system lists them. Links are no regular files. None when they cannot be listed to
/// the end.
[[nodiscard]] std::optional<QStringList> filesBelowApps(const QString& packetFolder);

/// Whether packing leaves the file out because a component of its path begins with a dot.
[[nodiscard]] bool isLeftOutOfPackets(const QString& relativePath);

/// The line of `data` from byte `startingAt` up to the next line feed, as ISO Latin-1; `outOffset` is set to the byte
/// after the line feed. A null string, and `outOffset` untouched, when there is no further line feed.
[[nodiscard]] QString lineFromData(const QByteArray& data, qsizetype startingAt, qsizetype& outOffset);

/// `temporaryFolder`/"TarvexTransfer", in which packets are expanded; made (mode 0700) when missing. Answered also when
/// that fails.
[[nodiscard]] QString pathToInflateFolder(const QString& temporaryFolder);

/// Removes the inflate folder with all its contents and makes it again, empty. False when something could not be
/// removed or made.
bool clearTempFolder(const QString& temporaryFolder);

/// The folders on the phone's storage that photos and videos, and voice memos, are copied to: relative paths.
[[nodiscard]] QString pathToPhotoLocationOnDevice();
[[nodiscard]] QString pathToVoiceMemoLocationOnDevice();

/// Logs the tables and rows of the database at `path`, for diagnosis only.
void dumpDatabase(const QString& path);

} // namespace DRMigrateUtils

/// The zlib stream inflated, in one piece; a truncated or damaged stream answers none. An empty buffer answers itself.
/// Bytes after the end of the stream are ignored.
[[nodiscard]] std::optional<QByteArray> zlibInflate(const QByteArray& bytes);

/// The bytes as a zlib stream of the default level. An empty buffer answers itself.
[[nodiscard]] std::optional<QByteArray> zlibDeflate(const QByteArray& bytes);
