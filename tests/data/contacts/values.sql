INSERT INTO ABPerson (ROWID, First) VALUES (1, 'Labels'), (2, 'Kinds'), (3, 'Nothing');
-- The first label is NULL, so that number 2 is the second that is not: labels.
INSERT INTO ABMultiValue (UID, record_id, property, label, value) VALUES
    (1, 1, 3, 1, '1'), (2, 1, 3, 2, '2'), (3, 1, 3, 3, '3'), (4, 1, 3, 4, '4'), (5, 1, 3, 6, '5'), (6, 1, 3, 8, '6'),
    (7, 1, 3, 9, '7'), (8, 1, 3, 10, '8'), (9, 1, 3, 0, '9'), (10, 1, 3, -1, '10'), (11, 1, 3, 99, '11'), (12, 1, 3, NULL, '12'),
    (13, 1, 3, 1, NULL);
-- Every kind of value, with the labels that telephone numbers have and with others; not in the order of the kinds.
INSERT INTO ABMultiValue (UID, record_id, property, label, value) VALUES
    (20, 2, 23, 7, 'Mum'), (21, 2, 23, 2, 'Flatmate'), (22, 2, 22, 5, 'http://example.com/a;b'), (23, 2, 22, 2, 'http://home.example'),
    (24, 2, 13, NULL, NULL), (25, 2, 13, 4, 'ignored'), (26, 2, 12, 11, '-656251200'), (27, 2, 12, NULL, '43200.0'),
    (28, 2, 5, 2, NULL), (29, 2, 5, 6, NULL), (30, 2, 5, NULL, NULL), (31, 2, 4, 2, 'home@example.com'),
    (32, 2, 4, 6, 'sea@example.com'), (33, 2, 99, 2, 'of no known kind'), (34, 2, 13, 6, NULL);
INSERT INTO ABMultiValueEntry VALUES
    (24, 7, 'SkypeInstant'), (24, 8, 'ada.skype'), (25, 9, 'Telepathy'), (25, 10, 'ada.think'), (34, 8, 'nowhere'),
    (28, 1, '5 Hill Road
Flat 2'), (28, 2, '12345'), (28, 3, 'Town'), (28, 5, 'County'), (28, 6, 'Land'), (28, 4, 'ld'),
    (29, 3, 'Beach'), (29, 4, 'se'), (29, 99, 'no such part'), (29, 0, 'nor this'), (29, 1, ''), (30, NULL, 'lost');
