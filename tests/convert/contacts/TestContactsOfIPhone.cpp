#include "convert/contacts/DRContactCard.h"
#include "convert/contacts/DRPersonReader.h"
#include "tests/convert/contacts/DRContactsFixture.h"
#include "tests/support/DRTestTable.h"

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

const QString kSomebody = u"INSERT INTO ABPerson (ROWID, First) VALUES (1, 'Ada'), (2, 'Bo');"_s;

QByteArray cardsOf(const DRMigrateIPhoneAddressBook& book)
{
    QByteArray cards;
    const DREntries entries = book.entries();
    for (const DRContactCard* card : recordsOf<DRContactCard>(*entries)) {
        cards += card->vCard;
    }
    return cards.replace("\r\n", "\n");
}

} // namespace

class TestContactsOfIPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRContactsFixture> m_fixture;

private Q_SLOTS:

    void initTestCase() { QVERIFY(qputenv("TZ", "Asia/Kathmandu")); }

    void init() { m_fixture = std::make_unique<DRContactsFixture>(); }

    void cleanup() { initTestCase(); }

    /// An iPhone keeps the start of the day in its own time zone, which is taken to be the computer's.
    void birthdaysKeepTheirDayInEveryTimeZone_data()
    {
        const DRTestTable<QByteArray> row("zone");
        for (const char* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago", "America/New_York", "Europe/Amsterdam",
                                 "UTC", "Asia/Kathmandu", "Pacific/Apia", "America/Sao_Paulo", "Africa/Monrovia"}) {
            row(zone, QByteArray(zone));
        }
    }

    void birthdaysKeepTheirDayInEveryTimeZone()
    {
        QFETCH(const QByteArray, zone);
        QVERIFY(qputenv("TZ", zone));
        tzset();
        const auto stored = [](int year) {
            std::tm day{.tm_mday = 6, .tm_mon = 4, .tm_year = year - 1900};
            return QString::number(static_cast<double>(mktime(&day)) - 978307200.0, 'f', 6);
        };
        QVERIFY(m_fixture->makeAddressBook(
            u"INSERT INTO ABPerson (ROWID, Birthday) VALUES (1, '%1'), (2, '%2'), (3, '%3'), (4, '%4');"_s.arg(
                stored(1604), stored(1799), stored(1800), stored(1980))));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        QStringList days;
        for (const QByteArray& line : cardsOf(*book).split('\n')) {
            if (line.startsWith("BDAY:")) {
                days << QString::fromLatin1(line.sliced(5));
            }
        }
        QCOMPARE(days, (QStringList{u"--05-06"_s, u"--05-06"_s, u"1800-05-06"_s, u"1980-05-06"_s}));
    }

    void repeatedNumbersAreNoBurden()
    {
        QVERIFY(m_fixture->makeAddressBook(
            u"INSERT INTO ABPerson (ROWID) VALUES (1); DROP TABLE ABMultiValue; CREATE TABLE ABMultiValue (UID, "
            u"record_id, "
            "property, label, value); DROP TABLE ABMultiValueEntry; CREATE TABLE ABMultiValueEntry (parent_id, key, "
            "value);"
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
            "INSERT INTO ABMultiValue SELECT 7, 1, 5, 0, '' FROM n; "
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) "
            "INSERT INTO ABMultiValueEntry SELECT 7, 1 + i % 6, 'part' FROM n;"_s));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load()); // every value with every part would take minutes
        QCOMPARE(cardsOf(*book).count("\nADR;"), 30000);
    }

    void contactsBecomeCards_data()
    {
        const DRTestTable<QString> row("name");
        const QDir folder(QStringLiteral(MIGRATE_TEST_DATA "/contacts"));
        for (const QString& file : folder.entryList({u"*.sql"_s})) {
            row(qPrintable(file), folder.filePath(file.chopped(4)));
        }
    }

    void contactsBecomeCards()
    {
        QFETCH(const QString, name);
        QVERIFY(m_fixture->makeAddressBook(QString::fromUtf8(readFile(name + u".sql"_s))));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        const QByteArray expected = readFile(name + u".expected"_s);
        QCOMPARE(QString::fromUtf8(cardsOf(*book)), QString::fromUtf8(expected));
        QCOMPARE(book->report().found, expected.count("BEGIN:VCARD"));
        QVERIFY(book->report().skipped.empty());
    }

    void textsBecomeDates_data()
    {
        const DRTestTable<QString, double> row("text", "seconds");
        row("as the iPhone stores it", u"-547783200.000000"_s, -547783200.0);
        row("exponent", u"1.5e3"_s, 1500.0);
        row("comma", u"1,5"_s, 0.0);
        row("word", u"x"_s, 0.0);
        row("number and more", u"12 June"_s, 0.0);
        row("missing", {}, 0.0);
        row("infinite", u"inf"_s, 0.0);
        row("not a number", u"nan"_s, 0.0);
    }

    void textsBecomeDates()
    {
        QFETCH(const QString, text);
        QFETCH(const double, seconds);
        QCOMPARE(dateFromString(text).toMSecsSinceEpoch(), qRound64((978307200.0 + seconds) * 1000));
    }

    void callsAreRead()
    {
        QVERIFY(m_fixture->makeAddressBook(kSomebody));
        QVERIFY(
            m_fixture->makeCalls(u"INSERT INTO call (ROWID, address, date, duration, flags) VALUES "
                                 "(2, '+1 555', 1400000000, 61, 4), (1, NULL, NULL, NULL, NULL), (3, '', 5, 0, 5), "
                                 "(4, 'a@b.c', 9223372036854775807, 1, 17), (5, '7', -9223372036854775807, 1, 16);"_s));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        QStringList calls;
        for (const DRImportedCall& call : book->callLog()) {
            calls << u"%1|%2|%3|%4"_s.arg(call.address)
                         .arg(call.duration)
                         .arg(call.isIncoming ? u"in"_s : u"out"_s, call.isFaceTimeCall ? u"FaceTime"_s : u""_s);
        }
        QCOMPARE(calls, (QStringList{u"|0|in|"_s, u"+1 555|61|in|"_s, u"|0|out|"_s, u"a@b.c|1|out|FaceTime"_s,
                                     u"7|1|in|FaceTime"_s}));
        QCOMPARE(book->callLog().at(1).date.toSecsSinceEpoch(), 1'400'000'000);
        QVERIFY(book->callLog().at(3).date > book->callLog().at(1).date); // beyond all dates: saturated
        QCOMPARE(book->report().counts.at(u"calls"_s), 5);
    }

    void picturesBelongToTheirPersons()
    {
        QVERIFY(m_fixture->makeAddressBook(kSomebody));
        QVERIFY(m_fixture->makePictures(u"INSERT INTO ABFullSizeImage (ROWID, record_id, data) VALUES "
                                        "(1, 2, x'00'), (2, 77, x'00'), (3, NULL, x'00'), (4, 2, x'00');"_s));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        const DREntries entries = book->entries();
        const auto cards = recordsOf<DRContactCard>(*entries);
        QVERIFY(!cards.at(0)->pictureRow);
        QCOMPARE(cards.at(1)->pictureRow, std::optional<qint64>(4)); // the last of several
        QCOMPARE(cards.at(1)->name, u"Bo"_s);
    }

    void brokenDatabases_data()
    {
        // broken: databases that hold no SQLite
        const DRTestTable<QStringList, QStringList, bool, bool, int, int> row("broken", "missing", "isLoaded",
                                                                              "isNotInBackup", "calls", "skipped");
        const QString book = DRContactsFixture::kAddressBook;
        const QString images = DRContactsFixture::kImages;
        const QString calls = DRContactsFixture::kCalls;
        row("all there", {}, {}, true, false, 1, 0);
        row("only the address book", {}, {images, calls}, true, false, 0, 0);
        row("nothing", {}, {book, images, calls}, false, true, 0, 0);
        row("no address book", {}, {book}, false, false, 1, 1);
        row("broken address book", {book}, {}, false, false, 1, 1);
        row("broken pictures", {images}, {}, true, false, 1, 1);
        row("broken calls", {calls}, {}, true, false, 0, 1);
    }

    void brokenDatabases()
    {
        QVERIFY(m_fixture->makeAddressBook(kSomebody));
        QVERIFY(m_fixture->makePictures(u"INSERT INTO ABFullSizeImage (record_id, data) VALUES (1, x'00');"_s));
        QVERIFY(m_fixture->makeCalls(u"INSERT INTO call (address) VALUES ('5');"_s));
        QFETCH(const QStringList, broken);
        for (const QString& database : broken) {
            QVERIFY(writeFile(m_fixture->backedUp(database), QByteArray("SQLite format 3\0\xFF", 17).repeated(400)));
        }
        QFETCH(const QStringList, missing);
        for (const QString& database : missing) {
            QVERIFY(QFile::remove(m_fixture->backedUp(database)));
        }
        const auto book = m_fixture->iPhoneSide();
        QTEST(book->load(), "isLoaded");
        const DRMigrateReport report = book->report();
        QTEST(report.isNotInBackup, "isNotInBackup");
        QTEST(static_cast<int>(book->callLog().size()), "calls");
        QTEST(static_cast<int>(report.skipped.size()), "skipped");
    }

    void olderSchemasAreRead()
    {
        QVERIFY(DRContactsFixture::run(m_fixture->backedUp(DRContactsFixture::kAddressBook),
                                       u"CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY, First TEXT);"
                                       "INSERT INTO ABPerson VALUES (1, 'Ada');"_s));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        QVERIFY(cardsOf(*book).contains("\nFN:Ada\n"));
        QCOMPARE(book->report().skipped.size(), 1U); // the numbers and addresses, whose tables are missing
    }

    void callsOfNewerSystemsAreTold()
    {
        QVERIFY(m_fixture->makeAddressBook(kSomebody));
        QVERIFY(writeFile(m_fixture->backedUp(u"HomeDomain-Library/CallHistoryDB/CallHistory.storedata"_s), "x"));
        const auto book = m_fixture->iPhoneSide();
        QVERIFY(book->load());
        QCOMPARE(book->report().skipped.size(), 1U);
    }
};

QTEST_APPLESS_MAIN(TestContactsOfIPhone)
#include "TestContactsOfIPhone.moc"
