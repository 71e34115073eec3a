#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "platform/sqlite/DRDatabase.h"

/// Where the files of an iPhone backup lie. Everything that reads a backed-up file asks here, so that another backup
/// layout is one more answer in this place.
namespace DRIPhoneBackupFiles {

/// How a backup keeps its files.
enum class Layout {
    HashedNames, ///< "Manifest.mbdb", files directly in the folder under the SHA-1 of domain and path
    Database,    ///< "Manifest.db", files in subfolders: newer systems; not read by this program
    Unknown,     ///< neither: files are looked for as in HashedNames
};

[[nodiscard]] Layout layoutOfBackup(const QString& backupPath);

/// Whether files can be found in a backup of this layout.
[[nodiscard]] constexpr bool isReadable(Layout layout)
{
    return layout != Layout::Database;
}

/// The folder of the backup's files without links in its path; empty when it is not there or its layout is not read. For
/// `placeInFolder`, when many files are looked for: the operations below find it anew each time.
[[nodiscard]] QString folderOfFiles(const QString& backupPath);

/// Where a backup with this folder would hold the file; empty when the folder is.
[[nodiscard]] QString placeInFolder(const QString& folder, const QString& domainPath);

/// Whether the backup holds anything under `domainPath`, readable or not. Also true when that cannot be told: false means that it
/// certainly holds nothing.
[[nodiscard]] bool holds(const QString& backupPath, const QString& domainPath);

/// The readable file that holds `domainPath`, a domain and relative path joined by "-" such as
/// "HomeDomain-Library/Notes/notes.sqlite". Empty when the backup does not hold it as a regular file.
[[nodiscard]] QString pathOfBackedUpFile(const QString& backupPath, const QString& domainPath);

/// How a loss says that the file which a database of the backup names is not to be had.
[[nodiscard]] QString reasonOfMissingFile();

/// A backed-up database, open for reading, and what must live as long.
class OpenDatabase {
public:
    [[nodiscard]] DRDatabase& operator*() { return m_database; }
    [[nodiscard]] DRDatabase* operator->() { return &m_database; }

    OpenDatabase(DRDatabase database, std::shared_ptr<void> privateCopy);

private:
    std::shared_ptr<void> m_privateCopy; ///< removes the private copy, after the database is closed
    DRDatabase m_database;
};

/// Opens the database under `domainPath`. Where the backup holds its write-ahead log as a file of its own, both are
/// copied to a private folder below `temporaryFolder` and the copy is opened, for the newest rows are only in the log.
/// None when the backup does not hold it, or it or its log cannot be opened; the backup is never changed.
[[nodiscard]] std::optional<OpenDatabase>
openBackedUpDatabase(const QString& backupPath, const QString& domainPath, const QString& temporaryFolder);

} // namespace DRIPhoneBackupFiles
