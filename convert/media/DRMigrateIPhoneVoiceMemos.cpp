#include "convert/media/DRMigrateIPhoneVoiceMemos.h"

#include "convert/media/DRMediaLosses.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/iphone_backup/DRIPhoneBackupFiles.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRDCFileUtils.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kRecordingsDatabase = u"MediaDomain-Media/Recordings/Recordings.db"_s;

/// "~/Media/Recordings/memo.m4a" and "/var/mobile/Media/Recordings/memo.m4a" are the same place of the domain.
QString domainPathOf(QString storedPath)
{
    return u"MediaDomain-"_s + storedPath.remove(u"~/"_s).remove(u"/var/mobile/"_s);
}

QString lastComponent(const QString& path)
{
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

/// The library's number, an unsigned one, as hexadecimal digits without leading zeros.
QString persistentIdText(qint64 stored)
{
    constexpr int kHexadecimal = 16;
    return QString::number(static_cast<quint64>(stored), kHexadecimal);
}

} // namespace

bool DRMigrateIPhoneVoiceMemos::load()
{
    if (sourcePath().isEmpty()) {
        return false;
    }
    if (!DRIPhoneBackupFiles::holds(sourcePath(), kRecordingsDatabase)) {
        setReport({.isNotInBackup = true});
        return false;
    }
    auto database =
        DRIPhoneBackupFiles::openBackedUpDatabase(sourcePath(), kRecordingsDatabase, services().folders.temporary);
    if (!database) {
        qCWarning(lcMigrate, "The recordings database of the backup cannot be opened");
        return false;
    }
    return readRecordings(**database);
}

bool DRMigrateIPhoneVoiceMemos::readRecordings(DRDatabase& database)
{
    const QString folder = DRIPhoneBackupFiles::folderOfFiles(sourcePath());
    DREntryList recordings;
    DRMediaLosses losses;
    DRMigrateReport outcome;
    DRResultSet row = database.executeQuery(u"SELECT * FROM ZRECORDING"_s);
    while (row.next()) {
        const QString storedPath = row.string("ZPATH");
        const QString filename = lastComponent(storedPath);
        const quint32 kind = DRDCFileUtils::fileKindFromFileExtension(DRDCFileUtils::extensionOfName(filename));
        const QString path = DRIPhoneBackupFiles::placeInFolder(folder, domainPathOf(storedPath));
        if (!DRFiles::isRegularFile(path)) {
            losses.add(filename, kind, DRIPhoneBackupFiles::reasonOfMissingFile());
            continue;
        }
        DRDCFilePointer file = DRDCFile::fileWithSourcePath(path);
        file->setFileKind(kind);
        file->setMetadata(filename, QLatin1StringView(DRDCFile::kTargetFileName));
        file->setMetadata(persistentIdText(row.integer("ZITUNESPERSISTENTID")),
                          QLatin1StringView(DRDCFile::kPersistentId));
        recordings.emplace_back(std::move(file));
    }
    if (row.hasFailed()) {
        qCWarning(lcMigrate, "The recordings of the backup cannot be read: %ls",
                  qUtf16Printable(database.lastErrorMessage()));
        if (recordings.empty()) {
            return false;
        }
        outcome.skipped.push_back(
            {.what = u"Some voice memos"_s, .why = u"the backup's recordings database is damaged"_s});
    }
    losses.tell(outcome);
    outcome.found = static_cast<qint64>(recordings.size());
    setEntries(std::move(recordings));
    setReport(std::move(outcome));
    return true;
}
