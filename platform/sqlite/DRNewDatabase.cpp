#include "platform/sqlite/DRNewDatabase.h"

#include "platform/core/DRFiles.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace {

bool makeDatabase(const QString& path, const QString& script)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    return database && database->executeScript(script);
}

} // namespace

bool writeNewDatabase(const QString& path, const QString& script)
{
    const QString temporary = path + u".new"_s;
    if (!QDir().mkpath(QFileInfo(path).path()) || (QFile::exists(temporary) && !QFile::remove(temporary))) {
        return false;
    }
    if (!makeDatabase(temporary, script) || !DRFiles::flushToDisk(temporary)) {
        QFile::remove(temporary);
        return false;
    }
    // A log or journal of the old database would be replayed into the new one.
    for (const QLatin1StringView companion : std::array{"-wal"_L1, "-shm"_L1, "-journal"_L1}) {
        if (QFile::exists(path + companion) && !QFile::remove(path + companion)) {
            return false;
        }
    }
    return DRFiles::replace(temporary, path);
}
