-- What an iPhone with system 5 kept its messages in, beside what system 7 added to the same database: groups of people,
-- messages that name their group, pieces of multimedia messages, and attachments of iMessages (inside the phone called
-- Madrid).
ALTER TABLE message ADD COLUMN address TEXT;
ALTER TABLE message ADD COLUMN flags INTEGER;
ALTER TABLE message ADD COLUMN svc_center TEXT;
ALTER TABLE message ADD COLUMN group_id INTEGER;
ALTER TABLE message ADD COLUMN association_id INTEGER;
ALTER TABLE message ADD COLUMN height INTEGER;
ALTER TABLE message ADD COLUMN UIFlags INTEGER;
ALTER TABLE message ADD COLUMN headers BLOB;
ALTER TABLE message ADD COLUMN recipients BLOB;
ALTER TABLE message ADD COLUMN read INTEGER;
ALTER TABLE message ADD COLUMN madrid_attributedBody BLOB;
ALTER TABLE message ADD COLUMN madrid_handle TEXT;
ALTER TABLE message ADD COLUMN madrid_version INTEGER;
ALTER TABLE message ADD COLUMN madrid_guid TEXT;
ALTER TABLE message ADD COLUMN madrid_type INTEGER;
ALTER TABLE message ADD COLUMN madrid_roomname TEXT;
ALTER TABLE message ADD COLUMN madrid_service TEXT;
ALTER TABLE message ADD COLUMN madrid_account TEXT;
ALTER TABLE message ADD COLUMN madrid_account_guid TEXT;
ALTER TABLE message ADD COLUMN madrid_flags INTEGER;
ALTER TABLE message ADD COLUMN madrid_attachmentInfo BLOB;
ALTER TABLE message ADD COLUMN madrid_url TEXT;
ALTER TABLE message ADD COLUMN madrid_error INTEGER;
ALTER TABLE message ADD COLUMN is_madrid INTEGER;
ALTER TABLE message ADD COLUMN madrid_date_read INTEGER;
ALTER TABLE message ADD COLUMN madrid_date_delivered INTEGER;
CREATE INDEX madrid_handle_service_index ON message (madrid_handle, madrid_service);
CREATE INDEX madrid_roomname_service_index ON message (madrid_roomname, madrid_service);
CREATE INDEX madrid_guid_index ON message (madrid_guid);
CREATE INDEX message_flags_index ON message (flags);
CREATE INDEX message_group_index ON message (group_id, ROWID);

CREATE TABLE msg_group (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    type INTEGER,
    newest_message INTEGER,
    unread_count INTEGER,
    hash INTEGER
);

CREATE TABLE group_member (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    group_id INTEGER,
    address TEXT,
    country TEXT
);

CREATE TABLE msg_pieces (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    message_id INTEGER,
    data BLOB,
    part_id INTEGER,
    preview_part INTEGER,
    content_type TEXT,
    height INTEGER,
    version INTEGER,
    flags INTEGER,
    content_id TEXT,
    content_loc TEXT,
    headers BLOB
);
CREATE INDEX pieces_message_index ON msg_pieces (message_id);

CREATE TABLE madrid_attachment (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    attachment_guid TEXT,
    created_date INTEGER,
    start_date INTEGER,
    filename TEXT,
    uti_type TEXT,
    mime_type TEXT,
    transfer_state INTEGER,
    is_incoming INTEGER,
    message_id INTEGER
);
CREATE INDEX madrid_attachment_filename_index ON madrid_attachment (filename);
CREATE INDEX madrid_attachment_guid_index ON madrid_attachment (attachment_guid);
CREATE INDEX madrid_attachment_message_index ON madrid_attachment (message_id);

CREATE TABLE madrid_chat (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    style INTEGER,
    state INTEGER,
    account_id TEXT,
    properties BLOB,
    chat_identifier TEXT,
    service_name TEXT,
    guid TEXT,
    room_name TEXT,
    account_login TEXT,
    participants BLOB
);
CREATE INDEX madrid_chat_account_login_index ON madrid_chat (account_login);
CREATE INDEX madrid_chat_room_name_index ON madrid_chat (room_name);
CREATE INDEX madrid_chat_guid_index ON madrid_chat (guid);
CREATE INDEX madrid_chat_service_name_index ON madrid_chat (service_name);
CREATE INDEX madrid_chat_chat_identifier_index ON madrid_chat (chat_identifier);
CREATE INDEX madrid_chat_account_id_index ON madrid_chat (account_id);
CREATE INDEX madrid_chat_state_index ON madrid_chat (state);
CREATE INDEX madrid_chat_style_index ON madrid_chat (style);
