#include "convert/notes/DRNotesTemplate.h"

#include "platform/core/DRFiles.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The notes app's schema as the phone makes it. Pages of 1024 bytes and automatic vacuum are Android's defaults of
/// that time.
const QString kSchema = uR"(
PRAGMA page_size = 1024;
PRAGMA auto_vacuum = 1;
BEGIN;
CREATE TABLE android_metadata (locale TEXT);
INSERT INTO android_metadata VALUES ('en_US');
CREATE TABLE notes (
    _id INTEGER PRIMARY KEY,
    title TEXT,
    body TEXT,
    created INTEGER,
    modified INTEGER,
    deleted INTEGER,
    meta_info TEXT,
    doodle_path TEXT,
    voice_path TEXT,
    background TEXT,
    sync_uid TEXT,
    isdirty BOOLEAN,
    usn INTEGER,
    account_id INTEGER
);
CREATE TABLE accounts (_id INTEGER PRIMARY KEY, display_name TEXT, account_type TEXT);
INSERT INTO accounts VALUES (1, 'Local', 'vnd.android.cursor.item/vnd.vornmobile.note.local');
PRAGMA user_version = 1;
COMMIT;
)"_s;

bool makeDatabase(const QString& path)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Create);
    return database && database->executeScript(kSchema);
}

} // namespace

bool writeEmptyNotesDatabase(const QString& path)
{
    const QString temporary = path + u".new"_s;
    if (!QDir().mkpath(QFileInfo(path).path()) || (QFile::exists(temporary) && !QFile::remove(temporary))) {
        return false;
    }
    if (!makeDatabase(temporary) || !DRFiles::flushToDisk(temporary)) {
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
