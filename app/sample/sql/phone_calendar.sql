-- The calendar store of a 4.x phone, schema version 403. No trigger fires on an insert.
PRAGMA user_version = 403;

CREATE TABLE android_metadata (locale TEXT);
INSERT INTO android_metadata VALUES ('en_US');

CREATE TABLE Calendars (
    _id INTEGER PRIMARY KEY,
    account_name TEXT,
    account_type TEXT,
    _sync_id TEXT,
    dirty INTEGER,
    name TEXT,
    calendar_displayName TEXT,
    calendar_color INTEGER,
    calendar_color_index TEXT,
    calendar_access_level INTEGER,
    visible INTEGER NOT NULL DEFAULT 1,
    sync_events INTEGER NOT NULL DEFAULT 0,
    calendar_location TEXT,
    calendar_timezone TEXT,
    ownerAccount TEXT,
    isPrimary INTEGER,
    canOrganizerRespond INTEGER NOT NULL DEFAULT 1,
    canModifyTimeZone INTEGER DEFAULT 1,
    canPartiallyUpdate INTEGER DEFAULT 0,
    maxReminders INTEGER DEFAULT 5,
    allowedReminders TEXT DEFAULT '0,1',
    allowedAvailability TEXT DEFAULT '0,1',
    allowedAttendeeTypes TEXT DEFAULT '0,1,2',
    deleted INTEGER NOT NULL DEFAULT 0,
    cal_sync1 TEXT,
    cal_sync2 TEXT,
    cal_sync3 TEXT,
    cal_sync4 TEXT,
    cal_sync5 TEXT,
    cal_sync6 TEXT,
    cal_sync7 TEXT,
    cal_sync8 TEXT,
    cal_sync9 TEXT,
    cal_sync10 TEXT
);

CREATE TABLE Events (
    _id INTEGER PRIMARY KEY AUTOINCREMENT,
    _sync_id TEXT,
    dirty INTEGER,
    lastSynced INTEGER DEFAULT 0,
    calendar_id INTEGER NOT NULL,
    title TEXT,
    eventLocation TEXT,
    description TEXT,
    eventColor INTEGER,
    eventColor_index TEXT,
    eventStatus INTEGER,
    selfAttendeeStatus INTEGER NOT NULL DEFAULT 0,
    dtstart INTEGER,
    dtend INTEGER,
    eventTimezone TEXT,
    duration TEXT,
    allDay INTEGER NOT NULL DEFAULT 0,
    accessLevel INTEGER NOT NULL DEFAULT 0,
    availability INTEGER NOT NULL DEFAULT 0,
    hasAlarm INTEGER NOT NULL DEFAULT 0,
    hasExtendedProperties INTEGER NOT NULL DEFAULT 0,
    rrule TEXT,
    rdate TEXT,
    exrule TEXT,
    exdate TEXT,
    original_id INTEGER,
    original_sync_id TEXT,
    originalInstanceTime INTEGER,
    originalAllDay INTEGER,
    lastDate INTEGER,
    hasAttendeeData INTEGER NOT NULL DEFAULT 0,
    guestsCanModify INTEGER NOT NULL DEFAULT 0,
    guestsCanInviteOthers INTEGER NOT NULL DEFAULT 1,
    guestsCanSeeGuests INTEGER NOT NULL DEFAULT 1,
    organizer STRING,
    isOrganizer INTEGER,
    deleted INTEGER NOT NULL DEFAULT 0,
    eventEndTimezone TEXT,
    customAppPackage TEXT,
    customAppUri TEXT,
    uid2445 TEXT,
    sync_data1 TEXT,
    sync_data2 TEXT,
    sync_data3 TEXT,
    sync_data4 TEXT,
    sync_data5 TEXT,
    sync_data6 TEXT,
    sync_data7 TEXT,
    sync_data8 TEXT,
    sync_data9 TEXT,
    sync_data10 TEXT
);
CREATE INDEX eventsCalendarIdIndex ON Events (calendar_id);

CREATE TABLE Instances (
    _id INTEGER PRIMARY KEY,
    event_id INTEGER,
    begin INTEGER,
    end INTEGER,
    startDay INTEGER,
    endDay INTEGER,
    startMinute INTEGER,
    endMinute INTEGER,
    UNIQUE (event_id, begin, end)
);
CREATE INDEX instancesStartDayIndex ON Instances (startDay);

CREATE TABLE Attendees (
    _id INTEGER PRIMARY KEY,
    event_id INTEGER,
    attendeeName TEXT,
    attendeeEmail TEXT,
    attendeeStatus INTEGER,
    attendeeRelationship INTEGER,
    attendeeType INTEGER,
    attendeeIdentity TEXT,
    attendeeIdNamespace TEXT
);
CREATE INDEX attendeesEventIdIndex ON Attendees (event_id);

CREATE TABLE Reminders (_id INTEGER PRIMARY KEY, event_id INTEGER, minutes INTEGER, method INTEGER NOT NULL DEFAULT 0);
CREATE INDEX remindersEventIdIndex ON Reminders (event_id);

CREATE TABLE CalendarAlerts (
    _id INTEGER PRIMARY KEY,
    event_id INTEGER,
    begin INTEGER NOT NULL,
    end INTEGER NOT NULL,
    alarmTime INTEGER NOT NULL,
    creationTime INTEGER NOT NULL DEFAULT 0,
    receivedTime INTEGER NOT NULL DEFAULT 0,
    notifyTime INTEGER NOT NULL DEFAULT 0,
    state INTEGER NOT NULL,
    minutes INTEGER,
    UNIQUE (alarmTime, begin, event_id)
);
CREATE INDEX calendarAlertsEventIdIndex ON CalendarAlerts (event_id);

CREATE TABLE ExtendedProperties (_id INTEGER PRIMARY KEY, event_id INTEGER, name TEXT, value TEXT);
CREATE INDEX extendedPropertiesEventIdIndex ON ExtendedProperties (event_id);

CREATE TABLE EventsRawTimes (
    _id INTEGER PRIMARY KEY,
    event_id INTEGER NOT NULL,
    dtstart2445 TEXT,
    dtend2445 TEXT,
    originalInstanceTime2445 TEXT,
    lastDate2445 TEXT,
    UNIQUE (event_id)
);
CREATE TABLE CalendarMetaData (
    _id INTEGER PRIMARY KEY, localTimezone TEXT, minInstance INTEGER, maxInstance INTEGER
);
CREATE TABLE CalendarCache (_id INTEGER PRIMARY KEY, key TEXT NOT NULL, value TEXT);
CREATE TABLE Colors (
    _id INTEGER PRIMARY KEY,
    account_name TEXT NOT NULL,
    account_type TEXT NOT NULL,
    data TEXT,
    color_type INTEGER NOT NULL,
    color_index TEXT NOT NULL,
    color INTEGER NOT NULL
);
CREATE TABLE _sync_state (
    _id INTEGER PRIMARY KEY,
    account_name TEXT NOT NULL,
    account_type TEXT NOT NULL,
    data TEXT,
    UNIQUE (account_name, account_type)
);
CREATE TABLE _sync_state_metadata (version INTEGER);
INSERT INTO _sync_state_metadata VALUES (1);

CREATE TRIGGER events_cleanup_delete AFTER DELETE ON Events
BEGIN
    DELETE FROM Instances WHERE event_id = old._id;
    DELETE FROM EventsRawTimes WHERE event_id = old._id;
    DELETE FROM Attendees WHERE event_id = old._id;
    DELETE FROM Reminders WHERE event_id = old._id;
    DELETE FROM CalendarAlerts WHERE event_id = old._id;
    DELETE FROM ExtendedProperties WHERE event_id = old._id;
END;

CREATE TRIGGER calendar_cleanup AFTER DELETE ON Calendars
BEGIN
    DELETE FROM Events WHERE calendar_id = old._id;
END;

INSERT INTO CalendarCache (key, value) VALUES ('timezoneDatabaseVersion', '2013h');
INSERT INTO CalendarCache (key, value) VALUES ('timezoneType', 'auto');
