-- file: Library/SMS/Attachments/aa/photo.jpg
-- file: Library/SMS/Parts/01/00/2-0.jpg
CREATE TABLE msg_group (ROWID INTEGER PRIMARY KEY);
CREATE TABLE group_member (ROWID INTEGER PRIMARY KEY, group_id INTEGER, address TEXT);
CREATE TABLE message (ROWID INTEGER PRIMARY KEY, address TEXT, date INTEGER, text TEXT, flags INTEGER, group_id INTEGER, association_id INTEGER,
    is_from_me INTEGER, handle_id INTEGER);
CREATE TABLE msg_pieces (ROWID INTEGER PRIMARY KEY, message_id INTEGER, data BLOB, part_id INTEGER, content_type TEXT, content_loc TEXT);
CREATE TABLE madrid_attachment (ROWID INTEGER PRIMARY KEY, filename TEXT);
CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, chat_identifier TEXT, service_name TEXT);
CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);
CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER, UNIQUE (chat_id, handle_id));
CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER, PRIMARY KEY (chat_id, message_id));
CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY, filename TEXT, uti TEXT, mime_type TEXT);
CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER, UNIQUE (message_id, attachment_id));
INSERT INTO chat VALUES (1, 'identifier', 'iMessage');
INSERT INTO handle VALUES (1, '+1 555');
INSERT INTO chat_handle_join VALUES (1, 1);
INSERT INTO chat_message_join VALUES (1, 1);
INSERT INTO attachment VALUES (1, '~/Library/SMS/Attachments/aa/photo.jpg', 'public.jpeg', 'image/jpeg');
INSERT INTO message_attachment_join VALUES (1, 1);
INSERT INTO msg_group VALUES (1);
INSERT INTO group_member VALUES (1, 1, 'member');
INSERT INTO message VALUES (1, NULL, 60, 'newer', NULL, NULL, NULL, 1, 1), (2, 'member', 60, NULL, 3, 1, 0, NULL, NULL);
INSERT INTO msg_pieces VALUES (1, 2, 'older', 1, 'text/plain', NULL), (2, 2, NULL, 0, 'image/jpeg', 'IMG_2.jpg');
