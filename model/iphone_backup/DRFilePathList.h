#pragma once

#include <QString>
#include <QStringList>

#include <memory>

class DRAbstractData;

/// The files of an iPhone backup as its "Manifest.mbdb" lists them: each a domain and a relative path joined by "-", such as
/// "MediaDomain-Library/SMS/Parts/0a/10/1234-1.jpg". sha1HexString of such a text is the file's name in the backup's folder. The
/// layout is in docs/formats/backup-folder.md.
///
/// A value that never changes; copies share their content and may be used by several threads at once. Wherever letter case is
/// ignored, it is as Qt::CaseInsensitive does it: character by character, without changes of length.
class DRFilePathList {
public:
    /// The files whose text begins with `wherePathBeginsWith`, ignoring case, in the manifest's order; all files when that is null
    /// or empty. Folders, links and empty files are left out, and so are files whose size has low 32 bits that as a signed number are
    /// not above 0: 2 to 4 GiB, 6 to 8 GiB and so on. Without files when the manifest is missing, unreadable, larger than 1 GiB or
    /// no manifest; of a manifest that is cut off, those whose size is still there.
    [[nodiscard]] static DRFilePathList fileListFromMBDB(const QString& path, const QString& wherePathBeginsWith = {});

    /// The manifest's string at the reader's position: 16 bits of length, big-endian, then UTF-8. Empty also when it is
    /// absent (length 0xFFFF), no UTF-8 (the reader goes on behind it) or cut off (the reader is at the end then).
    [[nodiscard]] static QString parseString(DRAbstractData& reader);

    /// The big-endian integer of 1, 2, 4 or 8 bytes at the reader's position. 0 when it is cut off (the reader is at the end then)
    /// and, without reading, for any other size.
    [[nodiscard]] static quint64 parseInt(DRAbstractData& reader, int size);

    explicit DRFilePathList(QStringList filePaths = {});

    /// The first file that begins with `pathPrefix` and whose last component, the text after its last "/", is `withFilename`, both
    /// ignoring case. Without `includingExtension` the component counts only up to its last ".". Null when there is none.
    ///
    /// The first call of either kind builds an index; later ones do not depend on the number of files.
    [[nodiscard]] QString
    findInPath(const QString& pathPrefix, const QString& withFilename, bool includingExtension) const;

    [[nodiscard]] QStringList filePaths() const;

private:
    struct Content;
    std::shared_ptr<const Content> m_content;
};
