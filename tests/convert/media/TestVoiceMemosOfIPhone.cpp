#include "convert/media/DRMigrateIPhoneVoiceMemos.h"
#include "tests/convert/media/DRMediaFixture.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

const QString kDatabase = u"MediaDomain-Media/Recordings/Recordings.db"_s;
const QString kTable = u"CREATE TABLE ZRECORDING(Z_PK INTEGER PRIMARY KEY, ZITUNESPERSISTENTID INTEGER, ZPATH);"_s;
const QString kMemo = u"MediaDomain-Media/Recordings/memo.m4a"_s;

} // namespace

class TestVoiceMemosOfIPhone : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void recordingIsFound_data()
    {
        const DRTestTable<QString, QString, QString> row("row", "line", "persistentId");
        const QString found = u"memo.m4a 0x04 = "_s + kMemo;
        row("absolute", u"255, '/var/mobile/Media/Recordings/memo.m4a'"_s, found, u"ff"_s);
        row("home", u"-1, '~/Media/Recordings/memo.m4a'"_s, found, u"ffffffffffffffff"_s);
        row("both, twice", u"-9223372036854775808, '~/~//var/mobile/Media/Recordings/memo.m4a'"_s, found,
            u"8000000000000000"_s);
        row("the one uncovers the other", u"0, '/var/mo~/bile/Media/Recordings/memo.m4a'"_s, found, u"0"_s);
        row("no number", u"NULL, 'Media/Recordings/memo.m4a'"_s, found, u"0"_s);
        row("unknown kind", u"1, 'Media/Recordings/odd'"_s, u"odd 0x00 = MediaDomain-Media/Recordings/odd"_s, u"1"_s);
    }

    void recordingIsFound()
    {
        QFETCH(QString, row);
        QFETCH(QString, line);
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kDatabase, kTable + u"INSERT INTO ZRECORDING VALUES (1, %1);"_s.arg(row)));
        QVERIFY(fixture.addFiles({kMemo, u"MediaDomain-Media/Recordings/odd"_s}));
        DRMigrateIPhoneVoiceMemos memos(fixture.test.services);
        QVERIFY(!memos.load());
        memos.setSourcePath(fixture.backup());
        QVERIFY(memos.load());
        QCOMPARE(linesOf(memos), QStringList{line});
        QCOMPARE(lossesOf(memos), QStringList{});
        const DREntries entries = memos.entries();
        const DRDCFilePointer& file = *recordsOf<DRDCFilePointer>(*entries).front();
        QTEST(file->metadataForKey(QLatin1StringView(DRDCFile::kPersistentId)).toString(), "persistentId");
    }

    void whatIsMissingIsTold()
    {
        const DRMediaFixture fixture;
        QVERIFY(fixture.makeDatabase(kDatabase, kTable +
                                                    u"INSERT INTO ZRECORDING VALUES (1, 1, '~/gone.m4a'), (2, 2, NULL),"
                                                    "(3, 3, 'link.m4a'), (4, 4, '~/Media/Recordings/memo.m4a');"_s));
        QVERIFY(fixture.addFiles({kMemo}));
        QVERIFY(QFile::link(fixture.backedUp(kMemo), fixture.backedUp(u"MediaDomain-link.m4a"_s)));
        DRMigrateIPhoneVoiceMemos memos(fixture.test.services);
        memos.setSourcePath(fixture.backup());
        QVERIFY(memos.load());
        QCOMPARE(linesOf(memos), QStringList{u"memo.m4a 0x04 = "_s + kMemo});
        QCOMPARE(lossesOf(memos),
                 (QStringList{u"gone.m4a: its file is not in the backup, or cannot be read (0x00)"_s,
                              u"A file without a name: its file is not in the backup, or cannot be read (0x00)"_s,
                              u"link.m4a: its file is not in the backup, or cannot be read (0x00)"_s}));
    }

    void databaseThatCannotBeRead()
    {
        const DRMediaFixture fixture;
        DRMigrateIPhoneVoiceMemos memos(fixture.test.services);
        memos.setSourcePath(fixture.backup());
        QVERIFY(!memos.load());
        QVERIFY(memos.report().isNotInBackup);
        QVERIFY(writeFile(fixture.backedUp(kDatabase), "no database"));
        QVERIFY(!memos.load());
    }
};

QTEST_GUILESS_MAIN(TestVoiceMemosOfIPhone)
#include "TestVoiceMemosOfIPhone.moc"
