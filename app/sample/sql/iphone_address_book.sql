-- The address book of an iPhone with system 7. Only the phone knows the function ab_generate_guid(): rows made elsewhere
-- must bring their guid.
CREATE TABLE ABMultiValueLabel (
    value TEXT,
    UNIQUE (value)
);

CREATE TABLE ABMultiValueEntryKey (
    value TEXT,
    UNIQUE (value)
);

CREATE TABLE ABPerson (
    ROWID INTEGER PRIMARY KEY,
    First TEXT,
    Last TEXT,
    Middle TEXT,
    FirstPhonetic TEXT,
    MiddlePhonetic TEXT,
    LastPhonetic TEXT,
    Organization TEXT,
    Department TEXT,
    Note TEXT,
    Kind INTEGER,
    Birthday TEXT,
    JobTitle TEXT,
    Nickname TEXT,
    Prefix TEXT,
    Suffix TEXT,
    FirstSort TEXT,
    LastSort TEXT,
    CreationDate INTEGER,
    ModificationDate INTEGER,
    CompositeNameFallback TEXT,
    ExternalIdentifier TEXT,
    ExternalModificationTag TEXT,
    ExternalUUID TEXT,
    StoreID INTEGER,
    DisplayName TEXT,
    ExternalRepresentation BLOB,
    FirstSortSection TEXT,
    LastSortSection TEXT,
    FirstSortLanguageIndex INTEGER DEFAULT 2147483647,
    LastSortLanguageIndex INTEGER DEFAULT 2147483647,
    PersonLink INTEGER DEFAULT -1,
    ImageURI TEXT,
    IsPreferredName INTEGER DEFAULT 1,
    guid TEXT DEFAULT (ab_generate_guid()),
    PhonemeData TEXT,
    UNIQUE (guid)
);
CREATE INDEX ABPerson_ExternalIdentifier ON ABPerson (ExternalIdentifier);
CREATE INDEX ABPerson_ExternalUUID ON ABPerson (ExternalUUID);
CREATE INDEX ABPerson_IsPreferredName_LastSort
    ON ABPerson (IsPreferredName, LastSortLanguageIndex, LastSortSection, LastSort);
CREATE INDEX ABPerson_IsPreferredName_FirstSort
    ON ABPerson (IsPreferredName, FirstSortLanguageIndex, FirstSortSection, FirstSort);
CREATE INDEX ABPerson_PersonLink ON ABPerson (PersonLink);
CREATE INDEX ABPerson_StoreID_LastSort
    ON ABPerson (StoreID, LastSortLanguageIndex, LastSortSection, LastSort);
CREATE INDEX ABPerson_StoreID_FirstSort
    ON ABPerson (StoreID, FirstSortLanguageIndex, FirstSortSection, FirstSort);
CREATE INDEX ABPerson_LastSort
    ON ABPerson (LastSortLanguageIndex, LastSortSection, LastSort);
CREATE INDEX ABPerson_FirstSort
    ON ABPerson (FirstSortLanguageIndex, FirstSortSection, FirstSort);

CREATE TABLE ABMultiValue (
    UID INTEGER PRIMARY KEY,
    record_id INTEGER,
    property INTEGER,
    identifier INTEGER,
    label INTEGER,
    value TEXT,
    guid TEXT DEFAULT (ab_generate_guid()),
    UNIQUE (guid)
);
CREATE INDEX ABMultiValue_property_value ON ABMultiValue (property, value);
CREATE INDEX ABMultiValue_label ON ABMultiValue (label);
CREATE INDEX ABMultiValue_record_id ON ABMultiValue (record_id);

CREATE TABLE ABMultiValueEntry (
    parent_id INTEGER,
    key INTEGER,
    value TEXT,
    UNIQUE (parent_id, key)
);
CREATE INDEX ABMultiValueEntry_key ON ABMultiValueEntry (key);
