-- The database of the phone's notes app.
PRAGMA user_version = 1;

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
