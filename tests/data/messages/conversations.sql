-- file: Library/SMS/Attachments/aa/photo.jpg
-- file: Library/SMS/Attachments/bb/film.mov
-- Join tables without UNIQUE: a pair may stand there twice.
CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, chat_identifier TEXT, service_name TEXT);
CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);
CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER);
CREATE TABLE message (ROWID INTEGER PRIMARY KEY, text TEXT, handle_id INTEGER, date INTEGER, is_from_me INTEGER);
CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);
CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY, filename TEXT, uti TEXT, mime_type TEXT);
CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER);

INSERT INTO chat VALUES (1, 'alone', 'SMS'), (2, 'several', 'iMessage'), (3, 'dates', NULL), (4, 'empty', '');
INSERT INTO handle VALUES (5, '+1 555'), (6, 'o''brien@x.com'), (7, 'elsewhere'), (8, NULL);
-- Handles stand in the order of their rows; those that are not there and those without address are no recipients.
INSERT INTO chat_handle_join VALUES (2, 6), (2, 5), (2, 6), (2, 99), (2, NULL), (2, 8), (NULL, 7), (9, 7);

-- Texts: placeholders go, all else stays.
INSERT INTO message VALUES
    (1, char(65532) || 'a' || char(65532, 65532) || 'b', 0, 10, 0), (2, char(65279) || 'mark', NULL, 10, 1),
    (3, NULL, 99, 10, 2), (4, '', 7, 10, NULL), (5, char(65532), 5, 9, 0), (6, 'no address', 8, 11, 0),
    (20, 'in both', 6, 5, 0);
INSERT INTO chat_message_join VALUES (1, 4), (1, 3), (1, 2), (1, 1), (1, 5), (1, 6), (1, 20), (2, 20), (2, 20), (1, 77), (2, NULL);

-- Dates: missing before all, the others by their number, those of one second in the order of their rows.
INSERT INTO message VALUES
    (30, 'zero', 5, 0, 0), (31, 'missing', 5, NULL, 0), (32, 'negative', 5, -1, 0), (33, 'nanoseconds', 5, 599079037641931008, 0),
    (34, 'least', 5, -9223372036854775807, 0), (35, 'same', 5, 7, 0), (36, 'second', 5, 7, 0);
INSERT INTO chat_message_join SELECT 3, ROWID FROM message WHERE ROWID >= 30 ORDER BY ROWID DESC;

INSERT INTO attachment VALUES
    (1, '/var/mobile/Library/SMS/Attachments/bb/film.mov', NULL, 'video/quicktime'),
    (2, '~/Library/SMS/Attachments/aa/photo.jpg', 'public.jpeg', NULL), (3, '~/Library/SMS/Attachments/gone.png', NULL, NULL),
    (4, NULL, NULL, 'image/png');
INSERT INTO message_attachment_join VALUES (20, 2), (20, 1), (20, 2), (20, 77), (5, 3), (6, 4), (77, 1);
