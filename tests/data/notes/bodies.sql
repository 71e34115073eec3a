-- A note without a body row, one with two, one with NULL content; rows out of order; columns of an older system missing.
CREATE TABLE ZNOTE (Z_PK INTEGER PRIMARY KEY, ZTITLE VARCHAR);
CREATE TABLE ZNOTEBODY (Z_PK INTEGER PRIMARY KEY, ZOWNER INTEGER, ZCONTENT VARCHAR);
INSERT INTO ZNOTE VALUES (3, 'three'), (1, 'one &amp; <b>only</b>'), (2, 'two'), (4, NULL), (5, '''); DROP TABLE notes; --');
INSERT INTO ZNOTEBODY VALUES (1, 3, '<div>first</div><div>second</div>'), (2, 1, NULL), (3, 3, 'not this one'), (4, 4, '😀 שלום'), (5, 5, '"quoted"');
