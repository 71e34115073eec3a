-- file: Library/SMS/Parts/0a/00/40-1.jpg
-- file: Library/SMS/Parts/12c/00/50-0.amr
-- file: Library/SMS/Parts/0a/01/41-0.txt
-- file: Library/SMS/Attachments/aa/photo.jpg
-- file: 15
CREATE TABLE msg_group (ROWID INTEGER PRIMARY KEY, type INTEGER);
CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY, group_id INTEGER, address TEXT);
CREATE TABLE message (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, text TEXT, flags INTEGER, group_id INTEGER, association_id INTEGER);
CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY, message_id INTEGER, data BLOB, part_id INTEGER, content_type TEXT, content_loc TEXT);
CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY, filename TEXT);

INSERT INTO msg_group (ROWID) VALUES (300), (1), (2), (3), (4), (5), (10), (0);
INSERT INTO group_member (group_id, address) VALUES (1, '+1 555'), (1, 'second'), (1, NULL), (2, 'a'), (5, 'silent'),
    (10, 'ten'), (300, 'three hundred'), (NULL, 'nobody'), (4, NULL), (0, 'zeroth');

-- Group 1: one row of each association; those whose association is missing are told, for others have one.
INSERT INTO message VALUES
    (1, '+1 555', 0, 'received', 2, 1, 0), (2, '+1 555', 1400000000, 'sent', 3, 1, 0), (3, 'second', 5, 'to several', 3, 1, 7),
    (4, '+1 555', 4, 'to several', 3, 1, 7), (5, 'x', 6, 'left out', 16387, 1, NULL), (6, NULL, -1, NULL, NULL, 1, -2);
-- Group 2: no row has an association, so that all count. Groups 3 and 4 have no member with an address, group 5 no message.
INSERT INTO message VALUES (10, 'a', 9, 'later', 33, 2, NULL), (11, 'a', 8, 'earlier', 129, 2, NULL), (12, 'a', NULL, 'undated', 0, 2, NULL),
    (13, 'b', 1, 'to nobody', 0, 3, 0), (14, 'b', 1, 'to nobody', 0, 4, 0), (15, 'no group', 1, 'x', 0, NULL, 0);

-- Group 10, folder 0a. The pieces' types, texts and places.
INSERT INTO message VALUES
    (40, 'ten', 1, NULL, 2, 10, 0), (41, 'ten', 2, 'own text', 2, 10, 0), (42, 'ten', 3, NULL, 2, 10, 0), (43, 'ten', 4, '', 2, 10, 0),
    (44, 'ten', 5, NULL, 2, 10, 0);
INSERT INTO msg_pieces (message_id, data, part_id, content_type, content_loc) VALUES
    (40, x'736D696C', 0, 'application/smil', NULL), (40, x'EFBBBF4772C3BC6E', 0, 'TEXT/PLAIN; charset=utf-8', 'ignored.txt'),
    (40, x'00', 1, 'image/jpeg', 'IMG_1.jpg'), (40, NULL, 5, '', NULL), (40, 'further', 2, 'text/plain', NULL),
    (41, 'attached', 0, 'text/plain', 'notes.txt'), (41, 'own text', 1, 'text/plain', NULL), (41, NULL, 2, 'image/png', 'gone.png'),
    (42, NULL, 0, 'text/plain', NULL), (42, NULL, 0, 'text/plain', 'gone.txt'), (42, 'third', 1, 'text/plain', NULL),
    (43, 'never', 0, 'text/plain', NULL), (NULL, 'x', 0, 'text/plain', NULL);
-- Places that make a pattern: numbers and literals; anything else does not.
INSERT INTO madrid_attachment (filename) VALUES (NULL), ('15'), ('/var/mobile/Library/SMS/Attachments/aa/photo.jpg'), ('gone');
INSERT INTO msg_pieces (message_id, part_id, content_type, content_loc) VALUES
    (44, 0, 'a/number', ' +15 '), (44, 1, 'a/literal', '''%/PHOTO.jpg'''), (44, 2, 'a/name', 'filename'), (44, 3, 'an/injection', '15 OR 1=1'),
    (44, 4, 'a/pattern of a missing file', '''gone'''), (44, 5, 'nothing', '');
-- Group 300, folder 12c.
INSERT INTO message VALUES (50, 'three hundred', 1, 'sound', 2, 300, 0);
INSERT INTO msg_pieces (message_id, part_id, content_type, content_loc) VALUES (50, 0, NULL, 'sound.amr');
