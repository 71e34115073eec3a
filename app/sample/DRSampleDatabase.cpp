#include "app/sample/DRSampleDatabase.h"

#include "app/sample/DRSampleResources.h"
#include "platform/core/DRLog.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/sqlite/DRTransaction.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool setJournal(DRDatabase& database, DRSampleJournal journal)
{
    // The file is new: after a crash it is made again, so nothing is gained by waiting for the disk.
    if (!database.executeUpdate(u"PRAGMA synchronous=OFF"_s)) {
        return false;
    }
    const QString wanted = journal == DRSampleJournal::WriteAhead ? u"wal"_s : u"delete"_s;
    auto answer = database.executeQuery(u"PRAGMA journal_mode="_s + wanted);
    return answer.next() && answer.string("journal_mode") == wanted;
}

bool runScripts(DRDatabase& database, const QStringList& scripts)
{
    return std::all_of(scripts.begin(), scripts.end(), [&database](const QString& name) {
        return database.executeScript(QString::fromUtf8(sampleResource(u"sql/%1.sql"_s.arg(name))));
    });
}

bool fill(DRDatabase& database, const QStringList& scripts, const DRSampleRows& rows)
{
    DRTransaction transaction(database);
    return transaction.isOpen() && runScripts(database, scripts) && rows(database) && transaction.commit();
}

} // namespace

bool writeSampleDatabase(const QString& path,
                         const QStringList& scripts,
                         DRSampleJournal journal,
                         const DRSampleRows& rows)
{
    {
        auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
        if (!database) {
            qCWarning(lcMigrate) << "cannot make the sample database" << path;
            return false;
        }
        if (!setJournal(*database, journal) || !fill(*database, scripts, rows)) {
            qCWarning(lcMigrate) << "cannot fill the sample database" << path << database->lastErrorMessage();
            return false;
        }
    }
    // Closing the only connection moved the write-ahead log into the file, unless that failed.
    return !QFile::exists(path + u"-wal"_s);
}
