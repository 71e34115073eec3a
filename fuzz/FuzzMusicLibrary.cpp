// The computer's music library: a damaged one says so, playlists are found by their own numbers,
// tracks name files of this computer or none.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"
#include "platform/device/DRMigrateFileKinds.h"
#include "platform/media_library/DRMusicLibrary.h"
#include "platform/media_library/DRMusicLibraryReader.h"

using namespace Qt::StringLiterals;

void fuzzOne(QByteArrayView bytes)
{
    const DRFuzzFolder folder;
    const QString path = folder.write(u"Library.xml"_s, bytes);
    const DRMusicLibraryContent content = DRMusicLibraryReader::read(path);
    const DRMusicLibrary library(content);
    QStringList identifiers;
    for (const DRMusicPlaylist& playlist : content.playlists) {
        identifiers.append(QString::number(playlist.persistentID, 16));
    }
    for (const auto& [id, track] : content.tracks) {
        require(track.path.isEmpty() || track.path.startsWith(u'/'), "paths are absolute");
        require(!track.path.contains(QChar(0)), "paths have no NUL");
        require(track.durationMilliseconds >= 0, "nothing lasts less than no time");
    }
    require(library.filesWithFileKinds(~0U).size() <= content.tracks.size() + content.playlists.size(),
            "each track and playlist is answered once");
    require(library.filesWithPersistentIDs(identifiers).size() <= content.playlists.size(),
            "each playlist is found once");
    require(contentOf(path) == bytes, "reading leaves the library as it is");
}
