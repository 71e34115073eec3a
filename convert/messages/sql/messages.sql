-- The message store of a 4.x phone (schema version 57), with the tables and columns that the phone's maker added.
-- Without the version the phone would take the database for a new one and make its tables again.
PRAGMA user_version = 57;

CREATE TABLE android_metadata (locale TEXT);
INSERT INTO android_metadata VALUES ('en_US');

CREATE TABLE canonical_addresses (_id INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT);

CREATE TABLE threads (
    _id INTEGER PRIMARY KEY AUTOINCREMENT,
    date INTEGER DEFAULT 0,
    message_count INTEGER DEFAULT 0,
    recipient_ids TEXT,
    snippet TEXT,
    snippet_cs INTEGER DEFAULT 0,
    read INTEGER DEFAULT 1,
    type INTEGER DEFAULT 0,
    error INTEGER DEFAULT 0,
    has_attachment INTEGER DEFAULT 0
);

CREATE TABLE vrnm_threads (
    _id INTEGER PRIMARY KEY AUTOINCREMENT,
    date INTEGER DEFAULT 0,
    recipient_ids TEXT,
    snippet TEXT,
    snippet_cs INTEGER DEFAULT 0,
    snippet_type INTEGER DEFAULT 0,
    unread_count INTEGER DEFAULT 0,
    send_failed_count INTEGER DEFAULT 0,
    delivery_failed_count INTEGER DEFAULT 0,
    download_failed_count INTEGER DEFAULT 0
);

CREATE TABLE sms (
    _id INTEGER PRIMARY KEY,
    thread_id INTEGER,
    address TEXT,
    person INTEGER,
    date INTEGER,
    date_sent INTEGER DEFAULT 0,
    protocol INTEGER,
    read INTEGER DEFAULT 0,
    status INTEGER DEFAULT -1,
    type INTEGER,
    reply_path_present INTEGER,
    subject TEXT,
    body TEXT,
    service_center TEXT,
    locked INTEGER DEFAULT 0,
    error_code INTEGER DEFAULT 0,
    seen INTEGER DEFAULT 0,
    vrnm_message_priority INTEGER,
    parent_id INTEGER,
    delivery_status INTEGER,
    star_status INTEGER,
    sequence_time INTEGER
);

CREATE TABLE pdu (
    _id INTEGER PRIMARY KEY,
    thread_id INTEGER,
    date INTEGER,
    date_sent INTEGER DEFAULT 0,
    msg_box INTEGER,
    read INTEGER DEFAULT 0,
    m_id TEXT,
    sub TEXT,
    sub_cs INTEGER,
    ct_t TEXT,
    ct_l TEXT,
    exp INTEGER,
    m_cls TEXT,
    m_type INTEGER,
    v INTEGER,
    m_size INTEGER,
    pri INTEGER,
    rr INTEGER,
    rpt_a INTEGER,
    resp_st INTEGER,
    st INTEGER,
    tr_id TEXT,
    retr_st INTEGER,
    retr_txt TEXT,
    retr_txt_cs INTEGER,
    read_status INTEGER,
    ct_cls INTEGER,
    resp_txt TEXT,
    d_tm INTEGER,
    d_rpt INTEGER,
    locked INTEGER DEFAULT 0,
    seen INTEGER DEFAULT 0,
    star_status INTEGER,
    sequence_time INTEGER
);

CREATE TABLE part (
    _id INTEGER PRIMARY KEY,
    mid INTEGER,
    seq INTEGER DEFAULT 0,
    ct TEXT,
    name TEXT,
    chset INTEGER,
    cd TEXT,
    fn TEXT,
    cid TEXT,
    cl TEXT,
    ctt_s INTEGER,
    ctt_t TEXT,
    _data TEXT,
    text TEXT
);

CREATE TABLE addr (
    _id INTEGER PRIMARY KEY,
    msg_id INTEGER,
    contact_id INTEGER,
    address TEXT,
    type INTEGER,
    charset INTEGER
);

CREATE TABLE raw (
    _id INTEGER PRIMARY KEY,
    date INTEGER,
    reference_number INTEGER,
    count INTEGER,
    sequence INTEGER,
    destination_port INTEGER,
    address TEXT,
    pdu TEXT
);

CREATE TABLE pending_msgs (
    _id INTEGER PRIMARY KEY,
    proto_type INTEGER,
    msg_id INTEGER,
    msg_type INTEGER,
    err_type INTEGER,
    err_code INTEGER,
    retry_index INTEGER NOT NULL DEFAULT 0,
    due_time INTEGER,
    last_try INTEGER
);

CREATE TABLE rate (sent_time INTEGER);
CREATE TABLE drm (_id INTEGER PRIMARY KEY, _data TEXT);
CREATE TABLE attachments (sms_id INTEGER, content_url TEXT, offset INTEGER);
CREATE TABLE sr_pending (reference_number INTEGER, action TEXT, data TEXT);
CREATE TABLE pdu_recipient_threads (_id INTEGER PRIMARY KEY AUTOINCREMENT, pdu_id INTEGER, thread_id INTEGER);

CREATE VIRTUAL TABLE words USING fts3(
    _id INTEGER PRIMARY KEY, index_text TEXT, source_id INTEGER, table_to_use INTEGER
);

CREATE VIEW pdu_with_recipient_threads AS
    SELECT pdu.*, pdu_recipient_threads.thread_id AS recipient_thread_id
    FROM pdu LEFT JOIN pdu_recipient_threads ON pdu_recipient_threads.pdu_id = pdu._id;

CREATE INDEX typeThreadIdIndex ON sms (type, thread_id);
