#include "tests/app/sample/DRSampleFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QString kBook = u"HomeDomain-Library/AddressBook/AddressBook.sqlitedb"_s;
const QString kImages = u"HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb"_s;
const QString kCalls = u"WirelessDomain-Library/CallHistory/call_history.db"_s;

using Rows = DRTestTable<QString, QString, QString>;

void addPeople(const Rows& row)
{
    row("people", kBook, u"SELECT COUNT(*) FROM ABPerson"_s, u"240"_s);
    row("first labels", kBook,
        u"SELECT group_concat(value, '|') FROM (SELECT value FROM ABMultiValueLabel WHERE ROWID <= 6 ORDER BY ROWID)"_s,
        u"_$!<Mobile>!$_|_$!<Home>!$_|_$!<Main>!$_|_$!<Work>!$_|_$!<HomePage>!$_|Ferienhaus"_s);
    row("values without a person", kBook,
        u"SELECT COUNT(*) FROM ABMultiValue WHERE record_id NOT IN (SELECT ROWID FROM ABPerson)"_s, u"0"_s);
    row("labels out of range", kBook,
        u"SELECT COUNT(*) FROM ABMultiValue WHERE label NOT IN (SELECT ROWID FROM ABMultiValueLabel)"_s, u"0"_s);
    row("unlabelled values", kBook, u"SELECT COUNT(*) > 0 FROM ABMultiValue WHERE label IS NULL"_s, u"1"_s);
    row("unused labels", kBook,
        u"SELECT COUNT(*) FROM ABMultiValueLabel WHERE ROWID NOT IN (SELECT label FROM ABMultiValue WHERE label > 0)"_s,
        u"0"_s);
    row("kinds of values", kBook,
        u"SELECT group_concat(property, '|') FROM (SELECT DISTINCT property FROM ABMultiValue ORDER BY property)"_s,
        u"3|4|5|12|13|22|23"_s);
    row("only addresses and accounts have parts", kBook,
        u"SELECT COUNT(*) FROM ABMultiValue WHERE (property IN (5, 13)) <> (UID IN (SELECT parent_id FROM "
        "ABMultiValueEntry)) OR (property IN (5, 13)) <> (value IS NULL)"_s,
        u"0"_s);
    row("parts of nothing", kBook,
        u"SELECT COUNT(*) FROM ABMultiValueEntry WHERE parent_id NOT IN (SELECT UID FROM ABMultiValue) OR key NOT "
        "IN (SELECT ROWID FROM ABMultiValueEntryKey)"_s,
        u"0"_s);
    row("dates that are no numbers", kBook,
        u"SELECT COUNT(*) FROM (SELECT Birthday AS day FROM ABPerson UNION ALL SELECT value FROM ABMultiValue "
        u"WHERE "
        "property = 12) WHERE printf('%.6f', CAST(day AS REAL)) <> day"_s,
        u"0"_s);
    row("birthdays without a year", kBook, // from 1604-01-01 to 1605-01-01
        u"SELECT COUNT(*) > 2 FROM ABPerson WHERE CAST(Birthday AS REAL) BETWEEN -12528043200 AND -12496420800"_s,
        u"1"_s);
    row("every birthday is in that year or after 1899", kBook,
        u"SELECT COUNT(*) FROM ABPerson WHERE CAST(Birthday AS REAL) BETWEEN -12496420800 AND -3218788801"_s, u"0"_s);
    row("a note that ends a card", kBook,
        u"SELECT COUNT(*) FROM ABPerson WHERE Note LIKE '%' || char(10) || 'END:VCARD' || char(10) || '%'"_s, u"1"_s);
    row("a very long note", kBook, u"SELECT COUNT(*) FROM ABPerson WHERE length(Note) > 50000"_s, u"1"_s);
}

void addPicturesAndCalls(const Rows& row)
{
    row("pictures", kImages, u"SELECT COUNT(*) BETWEEN 35 AND 65 FROM ABFullSizeImage"_s, u"1"_s);
    row("pictures of nobody", kImages, u"SELECT COUNT(*) FROM ABFullSizeImage WHERE record_id NOT BETWEEN 1 AND 240"_s,
        u"0"_s);
    row("formats of pictures", kImages,
        u"SELECT COUNT(DISTINCT hex(substr(data, 1, 3))) || ',' || SUM(substr(data, 1, 3) = x'FFD8FF' OR "
        "substr(data, 1, 4) = x'89504E47') = '2,' || COUNT(*) FROM ABFullSizeImage"_s,
        u"1"_s);
    row("thumbnails", kImages,
        u"SELECT COUNT(*) = (SELECT COUNT(*) FROM ABFullSizeImage) FROM ABThumbnailImage JOIN ABFullSizeImage "
        u"USING "
        "(record_id)"_s,
        u"1"_s);
    row("calls", kCalls, u"SELECT COUNT(*) FROM call"_s, u"300"_s);
    row("flags of calls", kCalls,
        u"SELECT group_concat(flags, '|') FROM (SELECT DISTINCT flags FROM call ORDER BY flags)"_s,
        u"0|1|4|5|8|16|17"_s);
    row("calls in order, before the backup", kCalls, // 2014-05-06 07:08:09 UTC
        u"SELECT COUNT(*) FROM call JOIN call AS later ON later.ROWID = call.ROWID + 1 WHERE later.date < "
        u"call.date "
        "OR later.date >= 1399360089"_s,
        u"0"_s);
    row("calls without a number", kCalls, u"SELECT SUM(address IS NULL) || ',' || SUM(address = '') FROM call"_s,
        u"2,1"_s);
    row("missed calls", kCalls, u"SELECT SUM(duration = 0) > 50 AND MIN(duration) = 0 FROM call"_s, u"1"_s);
    row("calls of the call log's own characters", kCalls, u"SELECT COUNT(*) FROM call WHERE address GLOB '*[&<>]*'"_s,
        u"0"_s);
}

} // namespace

class TestSampleContacts : public QObject {
    Q_OBJECT

    const DRSampleFixture m_sample{2};

private Q_SLOTS:
    void storesAreWhatAnIPhoneHolds_data()
    {
        const Rows row("database", "sql", "expected");
        for (const QString& database : {kBook, kImages, kCalls}) {
            row("sound", database, u"SELECT * FROM pragma_integrity_check"_s, u"ok"_s);
        }
        addPeople(row);
        addPicturesAndCalls(row);
    }

    void storesAreWhatAnIPhoneHolds()
    {
        QFETCH(const QString, database);
        QFETCH(const QString, sql);
        QTEST(DRSampleFixture::answer(m_sample.stored(database), sql), "expected");
    }
};

QTEST_GUILESS_MAIN(TestSampleContacts)
#include "TestSampleContacts.moc"
