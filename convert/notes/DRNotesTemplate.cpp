#include "convert/notes/DRNotesTemplate.h"

#include "platform/sqlite/DRNewDatabase.h"

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

} // namespace

bool writeEmptyNotesDatabase(const QString& path)
{
    return writeNewDatabase(path, kSchema);
}
