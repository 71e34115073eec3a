-- 1: every column of a person. 2: only readings, no names. 3: nothing at all. 4: empty texts. 5: a company.
INSERT INTO ABPerson (ROWID, First, FirstPhonetic, Last, LastPhonetic, Middle, MiddlePhonetic, Prefix, Suffix, Organization, JobTitle,
                      Department, Nickname, Note, Birthday)
VALUES (1, '花子', 'はなこ', '山田', 'やまだ', 'M', 'えむ', 'Dr.', 'Jr.', 'ACME; Ltd.', 'Chief, Sales', 'R&D', 'Hana', 'one
two\three', -656251200.5);
INSERT INTO ABPerson (ROWID, FirstPhonetic) VALUES (2, 'only a reading');
INSERT INTO ABPerson (ROWID) VALUES (3);
INSERT INTO ABPerson (ROWID, First, Last, Organization, Nickname, Note) VALUES (4, '', '', '', '', '');
INSERT INTO ABPerson (ROWID, Organization) VALUES (5, 'Bakery');
-- Birthdays: without a year (1604), no number, empty, not finite, far away.
INSERT INTO ABPerson (ROWID, First, Birthday) VALUES (6, 'Yearless', -12500000000.0), (7, 'Word', 'June'), (8, 'Empty', ''),
                                                     (9, 'Infinite', 9e999), (10, 'Blob', x'FF');
-- Invalid UTF-8.
INSERT INTO ABPerson (ROWID, First) VALUES (11, CAST(x'41FF42' AS TEXT));
