#pragma once

#include <memory>
#include <mutex>

#include <QString>

class DRMusicLibrary;
struct DRUserFolders;

/// Access to the media that this computer keeps: its music library. The file is read when the library is first asked
/// for, once, however many threads ask.
class DRMediaAccessController {
public:
    /// `libraryPath`: the library file; empty when the computer has none.
    explicit DRMediaAccessController(QString libraryPath);
    ~DRMediaAccessController();
    DRMediaAccessController(const DRMediaAccessController&) = delete;
    DRMediaAccessController& operator=(const DRMediaAccessController&) = delete;

    /// Where the music program of this computer keeps its library: the first file that exists of "iTunes Music
    /// Library.xml" and "iTunes Library.xml" in the folder "iTunes" of the user's music. Empty when there is none.
    [[nodiscard]] static QString defaultLibraryPath(const DRUserFolders& folders);

    [[nodiscard]] const QString& libraryPath() const { return m_libraryPath; }

    /// The library, read on the calling thread, which takes a second when it is large: ask in the background. Null when
    /// the computer has none; one that cannot be read, or not to its end, has a `problem`.
    [[nodiscard]] std::shared_ptr<const DRMusicLibrary> iTunesLibrary() const;

private:
    QString m_libraryPath;
    mutable std::mutex m_mutex; ///< guards the library
    mutable std::shared_ptr<const DRMusicLibrary> m_library;
};
