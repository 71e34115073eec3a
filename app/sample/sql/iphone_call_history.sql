-- The call history of an iPhone with system 7.
CREATE TABLE call (
    ROWID INTEGER PRIMARY KEY,
    address TEXT,
    date INTEGER,
    duration INTEGER,
    flags INTEGER,
    id INTEGER,
    name TEXT,
    country_code TEXT,
    network_code TEXT,
    read INTEGER,
    assisted INTEGER,
    face_time_data BLOB,
    originalAddress TEXT,
    answered INTEGER
);
CREATE INDEX call_date ON call (date);
