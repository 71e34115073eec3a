#include "app/sample/DRSampleManifest.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "tests/app/sample/DRSampleFixture.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestTable.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace {

QByteArray sha1(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

/// All files below a folder by their relative path.
QMap<QString, QByteArray> filesBelow(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        files[QDir(folder).relativeFilePath(path)] = readFile(path);
    }
    return files;
}

struct ManifestEntry {
    QByteArray name; ///< domain, "-", path
    QByteArray hash;
    quint16 mode = 0;
    quint64 size = 0;
};

/// A second reading of the manifest's format, apart from the program's own.
QList<ManifestEntry> decodedManifest(const QByteArray& bytes)
{
    QDataStream stream(bytes);
    stream.skipRawData(6);
    const auto string = [&stream] {
        quint16 length = 0;
        stream >> length;
        QByteArray text(length == 0xFFFF ? 0 : length, '\0');
        stream.readRawData(text.data(), static_cast<int>(text.size()));
        return text;
    };
    QList<ManifestEntry> entries;
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        ManifestEntry entry;
        entry.name = string() + '-';
        entry.name += string();
        string();
        entry.hash = string();
        string();
        quint8 protection = 0;
        quint8 properties = 0;
        stream >> entry.mode;
        stream.skipRawData(7 * 4);
        stream >> entry.size >> protection >> properties;
        for (int count = 0; count < 2 * properties; ++count) {
            string();
        }
        entries += entry;
    }
    return stream.status() == QDataStream::Ok ? entries : QList<ManifestEntry>();
}

const QStringList kPacketIds{
    u"com.android.browser"_s,
    u"com.android.chrome"_s,
    u"com.android.providers.calendar"_s,
    u"com.android.providers.telephony"_s,
    u"com.vornmobile.android.contactsimport"_s,
    u"com.vornmobile.android.socialphonebook"_s,
    u"com.vornmobile.notes"_s,
};

} // namespace

class TestSample : public QObject {
    Q_OBJECT

    const DRSampleFixture m_sample{1};

    [[nodiscard]] QString expanded(const QString& packetId) const
    {
        return m_sample.folder.filePath(u"expanded/"_s + packetId + u"/apps/"_s + packetId);
    }
    [[nodiscard]] QString notesDatabase() const { return m_sample.stored(u"HomeDomain-Library/Notes/notes.sqlite"_s); }

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString& packetId : kPacketIds) {
            const QString packet = m_sample.made.phoneFolder + u"/packets/"_s + packetId + u"/fullbackupdata"_s;
            QVERIFY2(
                DRMigrateUtils::expandAndroidBackupPacket(packet, m_sample.folder.filePath(u"expanded/"_s + packetId)),
                qPrintable(packet));
        }
    }

    void manifestRecordIsTheKnownBytes()
    {
        const DRSampleManifestRecord record{
            .domain = u"HomeDomain"_s,
            .path = u"Library/a.txt"_s,
            .dataHash = sha1("abc"),
            .mode = 0100644,
            .inode = 20001,
            .modified = QDateTime::fromSecsSinceEpoch(1399273689),
            .created = QDateTime::fromSecsSinceEpoch(1364800089),
            .sizeBytes = 3,
            .protectionClass = 3,
            .properties = {{"tag", QByteArray::fromHex("00ff")}},
        };
        QCOMPARE(
            encodeManifestRecord(record).toHex(' '),
            QByteArray(
                "00 0a 48 6f 6d 65 44 6f 6d 61 69 6e 00 0d 4c 69 62 72 61 72 79 2f 61 2e 74 78 74 ff ff 00 14 a9 99 3e "
                "36 47 06 81 6a ba 3e 25 71 78 50 c2 6c 9c d0 d8 9d ff ff 81 a4 00 00 00 00 00 00 4e 21 00 00 01 f5 00 "
                "00 01 f5 53 67 38 d9 51 59 32 59 51 59 32 59 00 00 00 00 00 00 00 03 03 01 00 03 74 61 67 00 02 00 "
                "ff"));
    }

    void manifestListsExactlyTheFiles()
    {
        const auto entries = decodedManifest(readFile(m_sample.made.backupFolder + u"/Manifest.mbdb"_s));
        QVERIFY(!entries.isEmpty());
        QStringList listed{u"Info.plist"_s, u"Manifest.mbdb"_s, u"Manifest.plist"_s, u"Status.plist"_s};
        for (const ManifestEntry& entry : entries) {
            if ((entry.mode & 0170000) == 0040000) {
                QCOMPARE(entry.size, quint64{0});
                continue;
            }
            listed += QString::fromLatin1(sha1(entry.name).toHex());
            const QByteArray content = readFile(m_sample.made.backupFolder + u'/' + listed.last());
            QCOMPARE(static_cast<quint64>(content.size()), entry.size);
            QCOMPARE(sha1(content).toHex(), entry.hash.toHex());
        }
        listed.sort();
        QCOMPARE(filesBelow(m_sample.made.backupFolder).keys(), listed);
    }

    void databasesAreSound_data()
    {
        const DRTestTable<QString, QString, int> row("path", "version", "journal"); // journal: 2: write-ahead log
        const auto phone = [this](const QString& id, const QString& name) { return expanded(id) + u"/db/"_s + name; };
        row("iPhone notes", notesDatabase(), u"0"_s, 2);
        row("iPhone photos", m_sample.stored(u"CameraRollDomain-Media/PhotoData/Photos.sqlite"_s), u"0"_s, 2);
        row("iPhone voice memos", m_sample.stored(u"MediaDomain-Media/Recordings/Recordings.db"_s), u"0"_s, 2);
        row("notes", phone(u"com.vornmobile.notes"_s, u"note.db"_s), u"1"_s, 1);
        row("telephony", phone(u"com.android.providers.telephony"_s, u"mmssms.db"_s), u"57"_s, 1);
        row("calendar", phone(u"com.android.providers.calendar"_s, u"calendar.db"_s), u"403"_s, 1);
        row("browser", phone(u"com.android.browser"_s, u"browser2.db"_s), u"32"_s, 2);
    }

    void databasesAreSound()
    {
        QFETCH(const QString, path);
        QFETCH(const int, journal);
        const QByteArray header = readFile(path).left(20);
        QCOMPARE(header.size(), qsizetype{20});
        QCOMPARE(int{header[18]}, journal);
        QCOMPARE(int{header[19]}, journal);
        QCOMPARE(DRSampleFixture::answer(path, u"PRAGMA integrity_check"_s), u"ok"_s);
        QTEST(DRSampleFixture::answer(path, u"PRAGMA user_version"_s), "version");
    }

    void notesAreWhatAnIPhoneHolds_data()
    {
        const DRTestTable<QString, QString> row("sql", "expected");
        row("each with its body",
            u"SELECT COUNT(*) FROM ZNOTE JOIN ZNOTEBODY ON ZOWNER = ZNOTE.Z_PK AND ZBODY = ZNOTEBODY.Z_PK"_s, u"200"_s);
        row("one without dates",
            u"SELECT COUNT(*) FROM ZNOTE WHERE ZCREATIONDATE IS NULL AND ZMODIFICATIONDATE IS NULL"_s, u"1"_s);
        QTest::newRow("dates as reals, before the backup") // 2014-05-06 07:08:09 UTC
            << u"SELECT COUNT(*) FROM ZNOTE WHERE typeof(ZCREATIONDATE) = 'real' AND ZCREATIONDATE <= "
               u"ZMODIFICATIONDATE "
               "AND ZMODIFICATIONDATE < 1399360089 - 978307200"_s
            << u"199"_s;
        row("a very long one", u"SELECT COUNT(*) FROM ZNOTEBODY WHERE length(ZCONTENT) >= 90000"_s, u"1"_s);
        row("an empty one", u"SELECT COUNT(*) FROM ZNOTEBODY WHERE ZCONTENT = ''"_s, u"1"_s);
        row("a byte order mark", u"SELECT ZOWNER FROM ZNOTEBODY WHERE unicode(ZCONTENT) = 65279"_s, u"12"_s);
        row("the next keys", u"SELECT Z_MAX FROM Z_PRIMARYKEY WHERE Z_NAME IN ('Note', 'NoteBody')"_s, u"200|200"_s);
    }

    void notesAreWhatAnIPhoneHolds()
    {
        QFETCH(const QString, sql);
        QTEST(DRSampleFixture::answer(notesDatabase(), sql), "expected");
    }

    void telephonyTriggersKeepTheThreads_data()
    {
        const DRTestTable<QString, QString, QString> row("change", "sql", "expected");
        const QString sms = u"INSERT INTO sms (thread_id, type, read, body) VALUES (2, %1, %2, 'new');"_s;
        const QString pdu =
            u"INSERT INTO pdu (_id, thread_id, m_type, msg_box, sub, sub_cs) VALUES (90, 2, %1, %2, 'new', 106);"_s;
        const QString part = u"INSERT INTO part (_id, mid, ct) VALUES (90, 90, '%1');"_s;
        const QString thread = u"SELECT snippet || ',' || snippet_cs || ',' || message_count || ',' || read || ',' || "
                               "(abs(date / 1000 - strftime('%s', 'now')) < 100) FROM threads WHERE _id = 2"_s;
        const QString kind = u"SELECT snippet_type FROM vrnm_threads WHERE _id = 2"_s;
        const QString attachment = u"SELECT has_attachment FROM threads WHERE _id = 2"_s;
        const QString error = u"SELECT error FROM threads WHERE _id = 2"_s;
        const QString pending = u"SELECT COUNT(*) FROM pending_msgs"_s;
        row("received", sms.arg(1).arg(1), thread, u"new,0,3,1,1"_s);
        row("unread", sms.arg(1).arg(0), thread, u"new,0,3,0,1"_s);
        row("read later", sms.arg(1).arg(0) + u"UPDATE sms SET read = 1"_s, thread, u"new,0,3,1,1"_s);
        row("draft is not counted", sms.arg(3).arg(1), thread, u"new,0,2,1,1"_s);
        row("kind received", sms.arg(1).arg(1), kind, u"1"_s);
        row("kind draft", sms.arg(3).arg(1), kind, u"3"_s);
        row("kind of type 0 is sent", sms.arg(0).arg(1), kind, u"2"_s);
        row("multimedia unread by default", pdu.arg(132).arg(1), thread, u"new,106,3,0,1"_s);
        row("multimedia draft", pdu.arg(128).arg(3), thread, u"new,106,2,0,1"_s);
        row("delivery report", pdu.arg(134).arg(1), thread, u"Ja!,0,2,1,0"_s);
        row("picture", pdu.arg(132).arg(1) + part.arg(u"image/png"_s), attachment, u"1"_s);
        row("text is no attachment", pdu.arg(132).arg(1) + part.arg(u"text/plain"_s), attachment, u"0"_s);
        row("SMIL is no attachment", pdu.arg(132).arg(1) + part.arg(u"application/smil"_s), attachment, u"0"_s);
        row("picture removed", pdu.arg(132).arg(1) + part.arg(u"image/png"_s) + u"DELETE FROM part WHERE mid = 90"_s,
            attachment, u"0"_s);
        row("parts go with the message",
            pdu.arg(132).arg(1) + part.arg(u"image/png"_s) + u"DELETE FROM pdu WHERE _id = 90"_s,
            u"SELECT COUNT(*) FROM part WHERE mid = 90"_s, u"0"_s);
        row("snippet after deleting", pdu.arg(132).arg(1) + u"DELETE FROM pdu WHERE _id = 90"_s,
            u"SELECT snippet FROM threads WHERE _id = 2"_s, u"Ja!"_s);
        row("failed text", sms.arg(2).arg(1) + u"UPDATE sms SET type = 5 WHERE body = 'new'"_s, error, u"1"_s);
        row("failed, then sent",
            sms.arg(2).arg(1) +
                u"UPDATE sms SET type = 5 WHERE body = 'new'; UPDATE sms SET type = 2 WHERE body = 'new'"_s,
            error, u"0"_s);
        row("notification waits", pdu.arg(130).arg(1), pending, u"1"_s);
        row("sent leaves the queue",
            pdu.arg(128).arg(1) + u"UPDATE pdu SET msg_box = 4 WHERE _id = 90;"_s +
                u"UPDATE pdu SET msg_box = 2 WHERE _id = 90"_s,
            pending, u"0"_s);
        row("failed multimedia", pdu.arg(130).arg(1) + u"UPDATE pending_msgs SET err_type = 10"_s, error, u"1"_s);
        row("search index follows", u"UPDATE sms SET body = 'quokka' WHERE _id = 4"_s,
            u"SELECT source_id FROM words WHERE words MATCH 'quokka'"_s, u"4"_s);
        row("search index forgets", u"DELETE FROM sms"_s, u"SELECT COUNT(*) FROM words"_s, u"0"_s);
    }

    void telephonyTriggersKeepTheThreads()
    {
        QFETCH(const QString, change);
        QFETCH(const QString, sql);
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"mmssms.db"_s);
        QVERIFY(QFile::copy(expanded(u"com.android.providers.telephony"_s) + u"/db/mmssms.db"_s, copy));
        auto database = DRDatabase::open(copy, DRDatabase::Profile::Phone);
        QVERIFY(database);
        QVERIFY2(database->executeScript(change), qPrintable(database->lastErrorMessage()));
        QTEST(DRSampleFixture::answer(*database, sql), "expected");
    }

    void packetsHoldTheirFiles_data()
    {
        const DRTestTable<QString, QStringList> row("packetId", "files");
        const QStringList contacts{u"_manifest"_s, u"f/TempCallLogs"_s, u"f/full_backup_vcard.vcf"_s};
        row("browser", kPacketIds[0], {u"_manifest"_s, u"db/browser2.db"_s});
        row("chrome", kPacketIds[1], {u"_manifest"_s, u"r/app_chrome/Default/Bookmarks"_s});
        row("calendar", kPacketIds[2], {u"_manifest"_s, u"db/calendar.db"_s});
        row("telephony", kPacketIds[3], {u"_manifest"_s, u"db/mmssms.db"_s, u"r/app_parts/PART_1399360089123"_s});
        row("contacts import", kPacketIds[4], contacts);
        row("social phone book", kPacketIds[5], contacts);
        row("notes", kPacketIds[6], {u"_manifest"_s, u"db/note.db"_s});
    }

    void packetsHoldTheirFiles()
    {
        QFETCH(const QString, packetId);
        const auto content = filesBelow(expanded(packetId));
        QTEST(content.keys(), "files");
        const auto lines = content.value(u"_manifest"_s).split('\n');
        QCOMPARE(lines.size(), qsizetype{9});
        QCOMPARE(lines[0] + lines[3] + lines[5] + lines[6], QByteArray("11901"));
        QCOMPARE(QString::fromLatin1(lines[1]), packetId);
        QCOMPARE(QByteArray::fromHex(lines[7]).toHex(), lines[7]);
    }

    void everySampleOfOneMomentIsTheSame()
    {
        const auto again = writeSample(m_sample.folder.filePath(u"again"_s), 1, m_sample.clock);
        QVERIFY2(again.isWritten, qPrintable(again.message));
        auto expected = filesBelow(m_sample.folder.filePath(u"sample"_s));
        // The music library alone tells where it is.
        expected[u"music/iTunes Music Library.xml"_s].replace(m_sample.folder.filePath(u"sample"_s).toUtf8(),
                                                              m_sample.folder.filePath(u"again"_s).toUtf8());
        const auto actual = filesBelow(m_sample.folder.filePath(u"again"_s));
        QCOMPARE(actual.keys(), expected.keys());
        for (const QString& name : expected.keys()) {
            QVERIFY2(actual[name] == expected[name], qPrintable(name));
        }
    }

    void refusesWhatIsThereAlready_data()
    {
        const DRTestTable<QString, int, bool> row("existing", "scale", "isWritten");
        row("an empty folder will do", u"phone"_s, 1, true);
        row("something in backups", u"backups/x"_s, 1, false);
        row("something in music", u"music/x"_s, 1, false);
        row("something in phone", u"phone/.hidden"_s, 1, false);
        row("no content at all", u"phone"_s, 0, false);
    }

    void refusesWhatIsThereAlready()
    {
        QFETCH(const QString, existing);
        QFETCH(const int, scale);
        QFETCH(const bool, isWritten);
        const QTemporaryDir folder;
        QVERIFY(QDir().mkpath(folder.filePath(existing)));
        const auto result = writeSample(folder.path(), scale, m_sample.clock);
        QCOMPARE(result.isWritten, isWritten);
        QCOMPARE(result.message.isEmpty(), isWritten);
        const auto names = QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(names, isWritten ? QStringList({u"backups"_s, u"music"_s, u"phone"_s})
                                  : QStringList(existing.section(u'/', 0, 0)));
    }
};

QTEST_GUILESS_MAIN(TestSample)
#include "TestSample.moc"
