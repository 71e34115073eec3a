#include "model/iphone_backup/DRIPhoneBackupFiles.h"

#include "platform/core/DRDigest.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRPrivateFolder.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <array>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace DRIPhoneBackupFiles {

namespace {

using Profile = DRDatabase::Profile;

QString placeOf(const QString& backupPath, const QString& domainPath)
{
    return placeInFolder(folderOfFiles(backupPath), domainPath);
}

/// Whether the file begins as a write-ahead log does. SQLite would take anything else for an empty log, and the newest
/// rows would be missing unnoticed.
bool isWriteAheadLog(const QString& path)
{
    constexpr qint64 kMagicBytes = 4;
    std::array<char, kMagicBytes> magic{};
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(path);
    if (file.read(magic.data(), kMagicBytes) != kMagicBytes) {
        return false;
    }
    const QByteArrayView bytes(magic);
    return bytes == QByteArrayView("\x37\x7f\x06\x82") || bytes == QByteArrayView("\x37\x7f\x06\x83");
}

/// Copies the database and its log to a private folder under names that belong together and opens the copy there.
std::optional<OpenDatabase> openCopyWithLog(const QString& database, const QString& log, const QString& temporaryFolder)
{
    if (!DRPrivateFolder::make(temporaryFolder)) {
        return std::nullopt;
    }
    auto folder = std::make_shared<QTemporaryDir>(temporaryFolder + u"/source-XXXXXX"_s);
    const QString copy = folder->filePath(u"copy.sqlite"_s);
    if (!folder->isValid() || !DRFiles::copyToNewFile(database, copy) ||
        !DRFiles::copyToNewFile(log, copy + u"-wal"_s)) {
        return std::nullopt;
    }
    auto opened = DRDatabase::open(copy, Profile::SourceCopy);
    return opened ? std::optional<OpenDatabase>(std::in_place, *std::move(opened), std::move(folder)) : std::nullopt;
}

} // namespace

Layout layoutOfBackup(const QString& backupPath)
{
    if (QFileInfo::exists(backupPath + u"/Manifest.mbdb"_s)) {
        return Layout::HashedNames;
    }
    return QFileInfo::exists(backupPath + u"/Manifest.db"_s) ? Layout::Database : Layout::Unknown;
}

/// The backup's folder itself may be reached through links that its owner made; nothing inside it may be one.
QString folderOfFiles(const QString& backupPath)
{
    const QString folder = QFileInfo(backupPath).canonicalFilePath();
    return !folder.isEmpty() && isReadable(layoutOfBackup(folder)) ? folder : QString();
}

QString placeInFolder(const QString& folder, const QString& domainPath)
{
    return folder.isEmpty() ? QString() : folder + u'/' + sha1HexString(domainPath);
}

bool holds(const QString& backupPath, const QString& domainPath)
{
    const QString place = placeOf(backupPath, domainPath);
    // Nothing there is one thing; a disk that does not tell is another, and must not look like an iPhone without notes.
    return place.isEmpty() || statusWithoutFollowing(place).has_value() || errno != ENOENT;
}

QString reasonOfMissingFile()
{
    return u"its file is not in the backup, or cannot be read"_s;
}

QString pathOfBackedUpFile(const QString& backupPath, const QString& domainPath)
{
    const QString place = placeOf(backupPath, domainPath);
    return DRFiles::isRegularFile(place) ? place : QString();
}

OpenDatabase::OpenDatabase(DRDatabase database, std::shared_ptr<void> privateCopy)
    : m_privateCopy(std::move(privateCopy)), m_database(std::move(database))
{
}

std::optional<OpenDatabase>
openBackedUpDatabase(const QString& backupPath, const QString& domainPath, const QString& temporaryFolder)
{
    const QString path = pathOfBackedUpFile(backupPath, domainPath);
    if (path.isEmpty()) {
        return std::nullopt;
    }
    const QString log = pathOfBackedUpFile(backupPath, domainPath + u"-wal"_s);
    if (log.isEmpty() && holds(backupPath, domainPath + u"-wal"_s)) {
        return std::nullopt;
    }
    const auto logStatus = statusWithoutFollowing(log);
    if (!log.isEmpty() && !logStatus) {
        return std::nullopt;
    }
    if (logStatus && logStatus->st_size > 0) {
        if (!isWriteAheadLog(log)) {
            return std::nullopt;
        }
        return openCopyWithLog(path, log, temporaryFolder);
    }
    auto opened = DRDatabase::open(path, Profile::Source);
    return opened ? std::optional<OpenDatabase>(std::in_place, *std::move(opened), nullptr) : std::nullopt;
}

} // namespace DRIPhoneBackupFiles
