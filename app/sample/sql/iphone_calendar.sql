-- The calendar store of an iPhone with system 7.
CREATE TABLE Calendar (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    store_id INTEGER,
    title TEXT,
    flags INTEGER,
    color TEXT,
    symbolic_color_name TEXT,
    color_is_display INTEGER,
    type TEXT,
    supported_entity_types INTEGER,
    external_id TEXT,
    external_mod_tag TEXT,
    external_id_tag TEXT,
    external_rep BLOB,
    display_order INTEGER,
    UUID TEXT,
    shared_owner_name TEXT,
    shared_owner_email TEXT,
    sharing_status INTEGER,
    sharing_invitation_response INTEGER,
    published_URL TEXT,
    is_published INTEGER,
    invitation_status INTEGER,
    sync_token TEXT,
    self_identity_id INTEGER,
    self_identity_email TEXT,
    owner_identity_id INTEGER,
    owner_identity_email TEXT,
    notes TEXT,
    bulk_requests BLOB,
    subcal_account_id TEXT,
    push_key TEXT,
    digest BLOB
);
CREATE INDEX Calendar_self_identity_id ON Calendar (self_identity_id);
CREATE INDEX Calendar_UUID ON Calendar (UUID);
CREATE INDEX Calendar_store_id ON Calendar (store_id);
CREATE INDEX Calendar_external_id ON Calendar (external_id);

CREATE TABLE CalendarItem (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    summary TEXT,
    location_id INTEGER,
    description TEXT,
    start_date REAL,
    start_tz TEXT,
    end_date REAL,
    all_day INTEGER,
    calendar_id INTEGER,
    orig_item_id INTEGER,
    orig_date REAL,
    organizer_id INTEGER,
    self_attendee_id INTEGER,
    status INTEGER,
    invitation_status INTEGER,
    availability INTEGER,
    privacy_level INTEGER,
    url TEXT,
    last_modified REAL,
    sequence_num INTEGER,
    birthday_id INTEGER,
    modified_properties INTEGER,
    external_tracking_status INTEGER,
    external_id TEXT,
    external_mod_tag TEXT,
    unique_identifier TEXT,
    external_schedule_id TEXT,
    external_rep BLOB,
    response_comment TEXT,
    hidden INTEGER,
    has_recurrences INTEGER,
    has_attendees INTEGER,
    UUID TEXT,
    entity_type INTEGER,
    priority INTEGER,
    due_date REAL,
    due_tz TEXT,
    due_all_day INTEGER,
    completion_date REAL,
    creation_date REAL,
    conference TEXT,
    display_order INTEGER,
    created_by_id INTEGER,
    modified_by_id INTEGER,
    shared_item_created_date REAL,
    shared_item_created_tz TEXT,
    shared_item_modified_date REAL,
    shared_item_modified_tz TEXT,
    invitation_changed_properties INTEGER,
    default_alarm_removed INTEGER,
    phantom_master INTEGER,
    participation_status_modified_date REAL
);
CREATE INDEX CalendarItem_orig_date ON CalendarItem (orig_date);
CREATE INDEX CalendarItem_orig_item_id ON CalendarItem (orig_item_id);
CREATE INDEX CalendarItem_invitation_status ON CalendarItem (invitation_status);
CREATE INDEX CalendarItem_entity_type_calendar_id_completion_date_creation_date ON CalendarItem (entity_type, calendar_id, completion_date, creation_date);
CREATE INDEX CalendarItem_entity_type_completion_date ON CalendarItem (entity_type, completion_date);
CREATE INDEX CalendarItem_due_date ON CalendarItem (due_date);
CREATE INDEX CalendarItem_UUID ON CalendarItem (UUID);
CREATE INDEX CalendarItem_unique_identifier_calendar_id ON CalendarItem (unique_identifier, calendar_id);
CREATE INDEX CalendarItem_external_id_calendar_id ON CalendarItem (external_id, calendar_id);
CREATE INDEX CalendarItem_hidden_end_date_start_date ON CalendarItem (hidden, end_date, start_date);
CREATE INDEX CalendarItem_status ON CalendarItem (status);

CREATE TABLE Location (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    title TEXT,
    address TEXT,
    latitude INTEGER,
    longitude INTEGER,
    address_book_id TEXT,
    radius INTEGER,
    item_owner_id INTEGER,
    alarm_owner_id INTEGER
);
CREATE INDEX Location_item_owner_id ON Location (item_owner_id);

CREATE TABLE Recurrence (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    frequency INTEGER,
    interval INTEGER,
    week_start INTEGER,
    count INTEGER,
    cached_end_date REAL,
    cached_end_date_tz TEXT,
    end_date REAL,
    specifier TEXT,
    by_month_months INTEGER,
    owner_id INTEGER,
    external_id TEXT,
    external_mod_tag TEXT,
    external_id_tag TEXT,
    external_rep BLOB,
    UUID TEXT
);
CREATE INDEX Recurrence_UUID ON Recurrence (UUID);
CREATE INDEX Recurrence_owner_id ON Recurrence (owner_id);
CREATE INDEX Recurrence_external_id ON Recurrence (external_id);
CREATE INDEX Recurrence_end_date_count ON Recurrence (end_date, count);

CREATE TABLE Alarm (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    trigger_date REAL,
    trigger_interval INTEGER,
    type INTEGER,
    owner_id INTEGER,
    external_id TEXT,
    external_mod_tag TEXT,
    external_id_tag TEXT,
    external_rep BLOB,
    UUID TEXT,
    proximity INTEGER,
    disabled INTEGER,
    location_id INTEGER,
    acknowledgedDate REAL,
    default_alarm INTEGER,
    orig_alarm_id INTEGER
);
CREATE INDEX Alarm_trigger_date ON Alarm (trigger_date);
CREATE INDEX Alarm_owner_id ON Alarm (owner_id);
CREATE INDEX Alarm_UUID ON Alarm (UUID);
CREATE INDEX Alarm_external_id ON Alarm (external_id);

CREATE TABLE Participant (
    ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
    entity_type INTEGER,
    type INTEGER,
    status INTEGER,
    pending_status INTEGER,
    role INTEGER,
    identity_id INTEGER,
    owner_id INTEGER,
    external_rep BLOB,
    UUID TEXT,
    email TEXT,
    is_self INTEGER,
    comment TEXT,
    schedule_agent INTEGER,
    flags INTEGER,
    last_modified REAL
);
CREATE INDEX Participant_identity_id ON Participant (identity_id);
CREATE INDEX Participant_owner_id ON Participant (owner_id);
CREATE INDEX Participant_entity_type ON Participant (entity_type);
CREATE INDEX Participant_UUID ON Participant (UUID);

CREATE TABLE Identity (
    display_name TEXT,
    address TEXT,
    first_name TEXT,
    last_name TEXT,
    UNIQUE (display_name, address, first_name, last_name)
);
