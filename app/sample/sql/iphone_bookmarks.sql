-- The bookmarks of an iPhone with system 7. Rows of a folder come in the order of its index.
CREATE TABLE bookmarks (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    special_id INTEGER DEFAULT 0,
    parent INTEGER,
    type INTEGER,
    title TEXT,
    url TEXT,
    num_children INTEGER DEFAULT 0,
    editable INTEGER DEFAULT 1,
    deletable INTEGER DEFAULT 1,
    hidden INTEGER DEFAULT 0,
    hidden_ancestor_count INTEGER DEFAULT 0,
    order_index INTEGER,
    external_uuid TEXT,
    read INTEGER DEFAULT NULL,
    last_modified REAL DEFAULT NULL,
    server_id TEXT,
    sync_key TEXT,
    sync_data BLOB,
    added INTEGER DEFAULT 1,
    deleted INTEGER DEFAULT 0,
    extra_attributes BLOB DEFAULT NULL,
    local_attributes BLOB DEFAULT NULL,
    fetched_icon BOOL DEFAULT 0,
    icon BLOB DEFAULT NULL,
    dav_generation INTEGER DEFAULT 0,
    locally_added BOOL DEFAULT 0,
    archive_status INTEGER DEFAULT 0,
    syncable BOOL DEFAULT 1,
    web_filter_status INTEGER DEFAULT 0
);
CREATE INDEX bookmarks_dav_generation ON bookmarks (dav_generation);
CREATE INDEX bookmarks_server_id ON bookmarks (server_id);
CREATE INDEX bookmarks_external_uuid ON bookmarks (external_uuid);
CREATE INDEX bookmarks_parent_order_index ON bookmarks (parent, order_index);
CREATE INDEX bookmarks_parent_type_order_index ON bookmarks (parent, type, order_index);
CREATE INDEX bookmarks_url ON bookmarks (url);
CREATE INDEX bookmarks_special_id ON bookmarks (special_id);
