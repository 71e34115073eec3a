#include "convert/contacts/DRContactCard.h"
#include "convert/contacts/DRMigrateAndroidAddressBook.h"
#include "convert/contacts/DRMigrateIPhoneAddressBook.h"
#include "convert/contacts/DRVCardFile.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "tests/convert/contacts/DRContactsFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.vornmobile.android.contactsimport"_s;

/// The file as it stands after its own cards were written anew.
QByteArray rewritten(const QString& path)
{
    const DRVCardFile::Contents contents = DRVCardFile::read(path);
    const DREntryList cards(contents.cards.begin(), contents.cards.end());
    return DRVCardFile::write(path, cards, {}) ? readFile(path) : "not written";
}

} // namespace

class TestContactsOnPhone : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRContactsFixture> m_fixture;

    /// A packet of the phone with these files below its app's folder.
    [[nodiscard]] bool makePacket(const QMap<QString, QByteArray>& files) const
    {
        const QString folder = m_fixture->path(u"made"_s);
        QStringList paths;
        bool isMade = true;
        for (const auto& [name, bytes] : files.asKeyValueRange()) {
            const QString path = u"apps/%1/%2"_s.arg(kPacketID, name);
            isMade = writeFile(folder + u'/' + path, bytes) && isMade;
            paths << path;
        }
        return isMade && DRMigrateUtils::compressAndroidBackupPacket(
                             folder, paths, m_fixture->path(u"phone/%1/fullbackupdata"_s.arg(kPacketID)));
    }

    [[nodiscard]] auto phoneSide() const { return m_fixture->phoneSide<DRMigrateAndroidAddressBook>(); }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<DRContactsFixture>(kPacketID); }

    void cardsAreFound_data()
    {
        const DRTestTable<QByteArray, QByteArray, bool, bool> row("file", "cards", "isReadable", "isDamaged");

        const QByteArray one = "BEGIN:VCARD\r\nFN:One\r\nEND:VCARD";
        const QByteArray two = "BEGIN:VCARD\nFN:\xC3\x96\nEND:VCARD";
        row("empty", "", {}, true, false);
        row("blank lines between", one + "\r\n\r\n\n" + two + "\n", one + '\n' + two + '\n', true, false);
        row("nothing between", one + two, one + '\n' + two + '\n', true, false);
        row("mark of the encoding", "\xEF\xBB\xBF" + one, one + '\n', true, false);
        row("text outside", "hello " + one + " you", one + '\n', true, true);
        row("no end", one + "\nBEGIN:VCARD\nFN:Lost", one + '\n', true, true);
        row("other letter case", "begin:vcard\nend:vcard", {}, true, true);
        row("begin in a card", "BEGIN:VCARD\n" + one, "BEGIN:VCARD\n" + one + '\n', true, false);
        row("not UTF-8", one + "\xFF", {}, false, false);
        row("cut in a character", one + "\xC3", {}, false, false);

        // The reading goes chunk by chunk: markers and characters lie across every border of them.
        QByteArray large;
        QByteArray expected;
        for (int i = 0; large.size() < 3'000'000; ++i) {
            const QByteArray card =
                "BEGIN:VCARD\nNOTE:" + QByteArray("\xF0\x9F\x98\x80").repeated(i % 700) + "\nEND:VCARD";
            large += card + '\n';
            expected += card + '\n';
        }
        row("large", large, expected, true, false);
    }

    void cardsAreFound()
    {
        QFETCH(const QByteArray, file);
        const QString path = m_fixture->path(u"cards.vcf"_s);
        QVERIFY(writeFile(path, file));
        QTEST(DRVCardFile::read(path).isReadable, "isReadable");
        QTEST(DRVCardFile::read(path).isDamaged, "isDamaged");
        QVERIFY(!DRVCardFile::read(path).didDiskFail);
        QVERIFY(DRVCardFile::read(u"/proc/%1/mem"_s.arg(QCoreApplication::applicationPid())).didDiskFail);
        QTEST(rewritten(path), "cards");
    }

    void everythingReachesThePacket()
    {
        const QByteArray phoneCard = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Own;;;;\r\nEND:VCARD";
        QVERIFY(makePacket({{u"_manifest"_s, "1\n"},
                            {u"f/full_backup_vcard.vcf"_s, "\n" + phoneCard + "\r\n\r\n"},
                            {u"f/TempCallLogs"_s, "<CallLogList><Call><ID>4</ID></Call></CallLogList>"},
                            {u"f/settings"_s, "lost"}}));
        QVERIFY(m_fixture->makeAddressBook(u"INSERT INTO ABPerson (ROWID, First) VALUES (1, 'Ada'), (2, 'Bo');"_s));
        QVERIFY(m_fixture->makePictures(
            u"INSERT INTO ABFullSizeImage (record_id, data) VALUES (2, x'FFD8FF00'), (1, x'4749463839');"_s));
        QVERIFY(m_fixture->makeCalls(u"INSERT INTO call (address, date, duration, flags) VALUES ('5', 9, 3, 5);"_s));

        const auto source = m_fixture->iPhoneSide();
        QVERIFY(source->load());
        const auto target = phoneSide();
        QVERIFY(target->load());
        QCOMPARE(target->entries()->size(), 1U);
        QVERIFY(target->mergeDataFrom(*source));
        QCOMPARE(target->entries()->size(), 3U);
        QVERIFY(target->save());

        const QString packet = m_fixture->path(u"work/%1/fullbackupdata"_s.arg(kPacketID));
        const QString folder = m_fixture->path(u"expanded"_s);
        QVERIFY(DRMigrateUtils::expandAndroidBackupPacket(packet, folder));
        const QString app = folder + u"/apps/%1/"_s.arg(kPacketID);
        QCOMPARE(QDir(app + u"f"_s).entryList(QDir::Files, QDir::Name),
                 (QStringList{u"TempCallLogs"_s, u"full_backup_vcard.vcf"_s}));
        const QByteArray cards = readFile(app + u"f/full_backup_vcard.vcf"_s);
        QVERIFY(cards.startsWith(phoneCard + "\nBEGIN:VCARD\r\n"));
        QCOMPARE(cards.count("BEGIN:VCARD"), 3);
        QVERIFY(cards.indexOf("FN:Ada") < cards.indexOf("FN:Bo"));
        QVERIFY(cards.indexOf("PHOTO;ENCODING=b;TYPE=JPEG:/9j/AA==") > cards.indexOf("FN:Bo"));
        QCOMPARE(cards.count("PHOTO"), 1);
        QCOMPARE(readFile(app + u"f/TempCallLogs"_s),
                 "<CallLogList><Call><ID>4</ID></Call><Call><ID>4</ID><Number>5</Number><Date>9000</Date><Duration>3"
                 "</Duration><Type>2</Type><NumberType>0</NumberType></Call></CallLogList>");

        const DRMigrateReport report = target->report();
        QCOMPARE(report.found, 2);
        QCOMPARE(report.written, 2);
        QCOMPARE(report.counts.at(u"calls"_s), 1);
        QCOMPARE(report.skipped.size(), 1U); // a picture that is neither JPEG nor PNG
        QCOMPARE(report.skipped.front().what, u"The picture of Ada"_s);
        QCOMPARE(report.warnings.size(), 2); // another version of vCard, and the file that has no place
        QVERIFY(report.warnings.back().contains(u"f/settings"_s));
    }

    void lossesAreTold_data()
    {
        const DRTestTable<QByteArray, QByteArray, int, int> row("cards", "callLog", "warnings", "skipped");
        const QByteArray card = "BEGIN:VCARD\nEND:VCARD\n";
        const QByteArray log = "<CallLogList><Call><ID>2</ID></Call></CallLogList>";
        row("nothing lost", card, log, 1, 0); // but for the number with an ampersand
        row("contacts not UTF-8", card + '\xFF', log, 2, 1);
        row("contact without an end", card.chopped(5), log, 2, 1);
        row("contacts of another version", "BEGIN:VCARD\r\nVERSION:2.1\r\nEND:VCARD\r\n", log, 2, 0);
        row("call log replaced", card, QByteArray(log).replace("2", "1"), 2, 0);
        row("call log with other elements", card, "<CallLogList><Call x='1'><ID>1</ID></Call></CallLogList>", 2, 0);
    }

    void lossesAreTold()
    {
        QFETCH(const QByteArray, cards);
        QFETCH(const QByteArray, callLog);
        QVERIFY(makePacket(
            {{u"_manifest"_s, "1\n"}, {u"f/full_backup_vcard.vcf"_s, cards}, {u"f/TempCallLogs"_s, callLog}}));
        QVERIFY(m_fixture->makeAddressBook({}));
        QVERIFY(m_fixture->makeCalls(u"INSERT INTO call (address) VALUES ('a&b');"_s));
        const auto source = m_fixture->iPhoneSide();
        const auto target = phoneSide();
        QVERIFY(source->load() && target->load() && target->mergeDataFrom(*source) && target->save());
        QTEST(static_cast<int>(target->report().warnings.size()), "warnings");
        QTEST(static_cast<int>(target->report().skipped.size()), "skipped");
    }

    void packetsOfNoUse()
    {
        const auto target = phoneSide();
        QVERIFY(!target->load()); // no packet was fetched
        QVERIFY(makePacket({{u"f/full_backup_vcard.vcf"_s, "BEGIN:VCARD\nEND:VCARD\n"}}));
        QVERIFY(!target->load());
        QCOMPARE(target->report().skipped.back().what, u"The contacts app"_s);

        const auto ignored = phoneSide();
        ignored->setIgnoreDataType(true);
        const auto source = m_fixture->iPhoneSide();
        QVERIFY(ignored->load() && ignored->mergeDataFrom(*source) && ignored->save());
        QVERIFY(!QFileInfo::exists(m_fixture->inApp(u"f/TempCallLogs"_s)));
    }

    /// What cannot be written must not be packed, or the phone would lose what it has.
    void failedWritesFailTheSave()
    {
        QVERIFY(makePacket({{u"_manifest"_s, "1\n"}}));
        QVERIFY(m_fixture->makeAddressBook({}));
        const auto source = m_fixture->iPhoneSide();
        QVERIFY(source->load());

        const auto target = phoneSide();
        QVERIFY(target->load());
        QVERIFY(writeFile(m_fixture->inApp(u"f/TempCallLogs/in the way"_s), "x"));
        QVERIFY(target->mergeDataFrom(*source)); // which it always does
        QCOMPARE(target->report().skipped.size(), 1U);
        QVERIFY(!target->save());

        QVERIFY(QDir(m_fixture->inApp(u"f/TempCallLogs"_s)).removeRecursively());
        QVERIFY(QFile::remove(m_fixture->inApp(u"f/full_backup_vcard.vcf"_s)));
        QVERIFY(writeFile(m_fixture->inApp(u"f/full_backup_vcard.vcf/in the way"_s), "x"));
        QVERIFY(target->mergeDataFrom(*source));
        QVERIFY(!target->save());
        QCOMPARE(target->report().skipped.back().what, u"All contacts"_s);
    }
};

QTEST_APPLESS_MAIN(TestContactsOnPhone)
#include "TestContactsOnPhone.moc"
