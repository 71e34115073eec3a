-- The pictures of an iPhone's contacts, system 7.
CREATE TABLE ABFullSizeImage (
    ROWID INTEGER PRIMARY KEY,
    record_id INTEGER,
    crop_x INTEGER,
    crop_y INTEGER,
    crop_width INTEGER,
    data BLOB,
    UNIQUE (record_id)
);

CREATE TABLE ABThumbnailImage (
    ROWID INTEGER PRIMARY KEY,
    record_id INTEGER,
    format INTEGER,
    derived_from_format INTEGER,
    data BLOB,
    UNIQUE (record_id, format)
);
