#include "platform/core/DRFileDescriptor.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRDCDeviceTask.h"
#include "platform/device/DRDCFile.h"
#include "platform/folder_phone/DRFolderPhone.h"
#include "platform/folder_phone/DRMediaPlacement.h"
#include "tests/platform/folder_phone/DRFolderPhoneUnderTest.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestTable.h"
#include "tests/support/DRTestTaskQueue.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <array>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kDefaultCapacity = quint64{16} * 1024 * 1024 * 1024;

DRDCFilePointer fileToCopy(const QString& source, const QString& target)
{
    auto file = DRDCFile::fileWithSourcePath(source);
    file->setMetadata(target, QLatin1StringView(DRDCFile::kTargetPath));
    return file;
}

} // namespace

/// What is particular to a phone in a folder; the conformance suite tests what all phones do.
class TestFolderPhone : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void describesItself_data()
    {
        const DRTestTable<QByteArray, QString> row("json", "description"); // description: empty: no phone

        row("all keys",
            R"({"marketingName":"Vorn 7","androidBaseVersion":2,"appProductRevision":"3.1","memoryUsableCapacity":5000000000})",
            u"Vorn 7|2|3.1|5000000000"_s);
        const QString defaults = u"My phone|4|1|%1"_s.arg(kDefaultCapacity);
        row("no keys", "{}", defaults);
        row("wrong types",
            R"({"marketingName":7,"androidBaseVersion":"2","appProductRevision":null,"memoryUsableCapacity":[]})",
            defaults);
        row("values out of range", R"({"marketingName":"","androidBaseVersion":4294967296,"memoryUsableCapacity":-1})",
            defaults);
        row("no numbers of bytes", R"({"androidBaseVersion":2.5,"memoryUsableCapacity":1e300})", defaults);
        row("full from the start", R"({"memoryUsableCapacity":0})", u"My phone|4|1|0"_s);
        row("cut off", "{", {});
        row("an array", "[]", {});
        row("empty", "", {});
        row("too large", QByteArray("{}").append(QByteArray(1048576, ' ')), {});
    }

    void describesItself()
    {
        QFETCH(const QByteArray, json);
        const QTemporaryDir parent;
        const QString folder = parent.filePath(u"My phone"_s);
        QVERIFY(QDir().mkdir(folder));
        QVERIFY(writeFile(folder + u"/phone.json"_s, json));
        const auto phone = open(folder);
        const QString description = phone ? u"%1|%2|%3|%4"_s.arg(phone->marketingName())
                                                .arg(phone->androidBaseVersion())
                                                .arg(phone->appProductRevision())
                                                .arg(phone->memoryUsableCapacity())
                                          : QString();
        QTEST(description, "description");
    }

    void refusesWhatIsNoPhone()
    {
        const QTemporaryDir folder;
        QVERIFY(!open(folder.path()));
        QVERIFY(!open(folder.filePath(u"missing"_s)));
        QVERIFY(writeFile(folder.filePath(u"packets"_s), "a file"));
        QVERIFY(!open(folder.path()));
        QVERIFY(!open(folder.filePath(u"packets"_s)));
        QVERIFY(QDir(folder.path()).mkdir(u"storage"_s));
        QVERIFY(open(folder.path()));
        QVERIFY(QFile::link(u"/dev/zero"_s, folder.filePath(u"phone.json"_s)));
        QVERIFY(!open(folder.path()));
    }

    void offersItsPacketFolders()
    {
        DRFolderPhoneUnderTest phone(
            {.packets = {{u"com.b"_s, "b"}, {u"com.a"_s, "a"}, {u"not a packet"_s, "n"}}, .storage = {}}, 100, m_queue,
            m_center);
        QVERIFY(QDir(phone.path()).mkpath(u"packets/com.empty"_s));
        QVERIFY(QDir(phone.path()).mkpath(u"packets/com.folder/fullbackupdata"_s));
        QVERIFY(QDir(phone.path()).mkpath(u"packets/com.link"_s));
        QVERIFY(QFile::link(u"../com.a/fullbackupdata"_s, phone.path(u"packets/com.link/fullbackupdata"_s)));
        QVERIFY(QFile::link(u"com.a"_s, phone.path(u"packets/com.linked"_s)));
        QCOMPARE(phone.device()->backupPackets(),
                 QStringList({u"com.a"_s, u"com.b"_s, u"com.empty"_s, u"com.folder"_s, u"com.link"_s}));

        DRBRBackupInfo info;
        info.setTargetPath(phone.path(u"backup"_s));
        info.addPacketsToBackup(phone.device()->backupPackets());
        QStringList failed;
        phone.device()->requestTask()->backupPacketsWithDevice(
            phone.device(), info, {}, [&failed](const DRDCTaskResult& result) { failed = result.packetsWithErrors(); });
        m_queue.runAll();
        QCOMPARE(failed, QStringList({u"com.empty"_s, u"com.folder"_s, u"com.link"_s}));
    }

    void countsFreeSpaceWithoutFollowingLinks()
    {
        DRFolderPhoneUnderTest phone(
            {.packets = {{u"com.a"_s, QByteArray(20, 'p')}}, .storage = {{u"d/.hidden"_s, QByteArray(30, 's')}}}, 100,
            m_queue, m_center);
        QVERIFY(QFile::link(u"d/.hidden"_s, phone.path(u"storage/link"_s)));
        QVERIFY(QFile::link(u"d"_s, phone.path(u"storage/folder link"_s)));
        DRDCFilesystem& storage = phone.device()->preferredFilesystem();
        QCOMPARE(storage.memoryUsableFreeBytes(), quint64{50});
        QVERIFY(writeFile(phone.path(u"storage/more"_s), QByteArray(60, 'm')));
        QCOMPARE(storage.memoryFreeBytes(), quint64{0});
    }

    /// As files on a phone do not change but come and go, what one takes more than before shows that nothing was counted.
    void countsAgainWhenAFolderHasChanged()
    {
        DRFolderPhoneUnderTest phone({.packets = {}, .storage = {{u"d/e/file"_s, "1"}}}, 100, m_queue, m_center);
        DRDCFilesystem& storage = phone.device()->preferredFilesystem();
        const auto settle = [&phone] {
            for (const QString& folder : {u"packets"_s, u"storage"_s, u"storage/d"_s, u"storage/d/e"_s}) {
                const std::array times{timespec{.tv_sec = 1000, .tv_nsec = 0}, timespec{.tv_sec = 1000, .tv_nsec = 0}};
                ::utimensat(AT_FDCWD, phone.path(folder).toUtf8().constData(), times.data(), 0);
            }
        };
        settle();
        QCOMPARE(storage.memoryFreeBytes(), quint64{99});
        QVERIFY(writeFile(phone.path(u"storage/d/e/file"_s), "12"));
        QCOMPARE(storage.memoryFreeBytes(), quint64{99});
        QVERIFY(writeFile(phone.path(u"storage/d/e/other"_s), "3"));
        QCOMPARE(storage.memoryFreeBytes(), quint64{97});
        QVERIFY(writeFile(phone.path(u"storage/d/e/other"_s), "34"));
        QCOMPARE(storage.memoryFreeBytes(), quint64{96}); // the folder has changed too recently
        settle();
        QCOMPARE(storage.memoryFreeBytes(), quint64{96});
        QVERIFY(QDir(phone.path()).mkpath(u"packets/com.a"_s));
        QVERIFY(writeFile(phone.path(u"packets/com.a/fullbackupdata"_s), "5"));
        QCOMPARE(storage.memoryFreeBytes(), quint64{95});
    }

    void isRecognisedAgain()
    {
        const QTemporaryDir parent;
        const QString original = parent.filePath(u"original"_s);
        const QString moved = parent.filePath(u"moved"_s);
        QVERIFY(QDir().mkpath(original + u"/storage"_s));
        const auto phone = open(original);
        QCOMPARE(phone->identifier().size(), 16);
        QVERIFY(QFile::link(original, parent.filePath(u"link"_s)));
        QCOMPARE(open(parent.filePath(u"link"_s))->identifier(), phone->identifier());

        QVERIFY(QDir().rename(original, moved));
        QVERIFY(!phone->isConnected());
        QCOMPARE(open(moved)->identifier(), phone->identifier());

        QVERIFY(QDir().mkpath(original + u"/storage"_s));
        QVERIFY(!phone->isConnected());
        QVERIFY(open(original)->identifier() != phone->identifier());
    }

    void neverFollowsLinksOfThePhone()
    {
        const QTemporaryDir outside;
        QVERIFY(writeFile(outside.filePath(u"a"_s), "outside"));
        DRFolderPhoneUnderTest phone({.packets = {}, .storage = {{u"source"_s, "s"}}}, 1000, m_queue, m_center);
        const auto folderPhone = std::static_pointer_cast<DRFolderPhone>(phone.device());
        QVERIFY(QFile::link(outside.path(), phone.path(u"storage/Media"_s)));
        QVERIFY(QFile::link(outside.filePath(u"a"_s), phone.path(u"storage/a"_s)));
        QVERIFY(QFile::link(outside.filePath(u"new"_s), phone.path(u"storage/b"_s)));

        const QString source = phone.path(u"storage/source"_s);
        QCOMPARE(copy(*folderPhone, source, u"Media/new"_s).size(), 1);
        QCOMPARE(copy(*folderPhone, source, u"a"_s), QStringList());
        QCOMPARE(copy(*folderPhone, source, u"b"_s), QStringList());
        QCOMPARE(QDir(outside.path()).entryList(QDir::Files), QStringList(u"a"_s));
        QVERIFY(QFile::exists(phone.path(u"storage/a (2)"_s)) && QFile::exists(phone.path(u"storage/b (2)"_s)));
    }

    void keepsTheTimeOfChange()
    {
        DRFolderPhoneUnderTest phone({}, 1000, m_queue, m_center);
        const QTemporaryDir computer;
        const QDateTime taken(QDate(2014, 3, 9), QTime(18, 30, 0, 125), Qt::UTC);
        QFile source(computer.filePath(u"a"_s));
        QVERIFY(source.open(QIODevice::WriteOnly) && source.setFileTime(taken, QFile::FileModificationTime));
        source.close();
        QCOMPARE(copy(*std::static_pointer_cast<DRFolderPhone>(phone.device()), source.fileName(), u"d/a"_s),
                 QStringList());
        QCOMPARE(QFileInfo(phone.path(u"storage/d/a"_s)).lastModified().toUTC(), taken);
    }

    void removesWhatInterruptedCopiesLeft()
    {
        DRFolderPhoneUnderTest phone({}, 1000, m_queue, m_center);
        QVERIFY(QDir().mkpath(phone.path(u"storage/d"_s)));
        QVERIFY(writeFile(phone.path(u"storage/d/.phone-migrate-1"_s), "left"));
        QVERIFY(writeFile(phone.path(u"storage/d/.phone-migrate-2"_s), "being written"));
        QVERIFY(writeFile(phone.path(u"storage/d/.phone"_s), "somebody else's"));
        const DRFileDescriptor writer = DRFileDescriptor::open(phone.path(u"storage/d/.phone-migrate-2"_s), O_RDONLY);
        QVERIFY(::flock(writer.number(), LOCK_EX) == 0);
        const QTemporaryDir computer;
        QVERIFY(writeFile(computer.filePath(u"a"_s), "new"));
        QCOMPARE(copy(*std::static_pointer_cast<DRFolderPhone>(phone.device()), computer.filePath(u"a"_s), u"d/a"_s),
                 QStringList());
        QCOMPARE(QDir(phone.path(u"storage/d"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 QStringList({u".phone"_s, u".phone-migrate-2"_s, u"a"_s}));
    }

    void makesNamesSafe_data()
    {
        const DRTestTable<QString, QString> row("path", "safe"); // safe: joined by "/"

        row("plain", u"TarvexTransfer/Media/IMG_0001.JPG"_s, u"TarvexTransfer/Media/IMG_0001.JPG"_s);
        row("absolute and doubled", u"//etc//passwd/"_s, u"etc/passwd"_s);
        row("dots", u"a/../.././.../..b"_s, u"a/_/_/.../..b"_s);
        row("only dots", u"./."_s, u""_s);
        row("NUL", u"a%1b"_s.arg(QChar(0)), u"a_b"_s);
        row("control characters", u"a\n\x1b[2J\x7f\x85z"_s, u"a__[2J__z"_s);
        row("lone surrogates", QString(QChar(0xD83D)) + u"x"_s + QChar(0xDE00), u"_x_"_s);
        row("characters beyond the first plane", u"\U0001F600.jpg"_s, u"\U0001F600.jpg"_s);
        row("255 bytes", QString(255, u'a'), QString(255, u'a'));
        row("too long keeps its extension", QString(300, u'a') + u".jpeg"_s, QString(250, u'a') + u".jpeg"_s);
        row("too long without a character cut", QString(130, u'\u00e4') + u".m4a"_s,
            QString(125, u'\u00e4') + u".m4a"_s);
        row("a sentence has no extension", u"Hi. "_s + QString(300, u'b'), u"Hi. "_s + QString(251, u'b'));
    }

    void makesNamesSafe()
    {
        QFETCH(const QString, path);
        const QStringList names = DRMediaPlacement::safeComponents(path);
        QTEST(names.join(u'/'), "safe");
        for (const QString& name : names) {
            QVERIFY(name.toUtf8().size() <= DRMediaPlacement::kMaximumNameBytes);
        }
    }

    void numbersNames_data()
    {
        const DRTestTable<QString, QString> row("name", "numbered");
        row("extension", u"IMG_0001.JPG"_s, u"IMG_0001 (12).JPG"_s);
        row("none", u"memo"_s, u"memo (12)"_s);
        row("hidden", u".nomedia"_s, u".nomedia (12)"_s);
        row("long", QString(251, u'a') + u".jpg"_s, QString(246, u'a') + u" (12).jpg"_s);
    }

    void numbersNames()
    {
        QFETCH(const QString, name);
        QCOMPARE(DRMediaPlacement::numberedName(name, 1), name);
        QTEST(DRMediaPlacement::numberedName(name, 12), "numbered");
    }

    void proposesPaths_data()
    {
        const DRTestTable<quint32, QString, QString, QStringList> row("kind", "targetFileName", "path",
                                                                      "artistAndAlbum");
        row("song", 0x4, u"One.mp3"_s, u"Music/One.mp3"_s, {});
        row("song by its source", 0x4, {}, u"Music/source.mp3"_s, {});
        row("song of an album", 0x4, u"a/b.mp3"_s, u"Music/AC_DC/High_Low/a_b.mp3"_s, {u"AC/DC"_s, u" High/Low"_s});
        row("names that hide or lead away", 0x4, u"a.mp3"_s, u"Music/_./_nomedia/a.mp3"_s, {u".."_s, u".nomedia"_s});
        row("artist alone", 0x4, u"a.mp3"_s, u"Music/a.mp3"_s, {u"A"_s, u" "_s});
        row("playlist", 0x40, u"AC/DC"_s, u"Music/AC_DC.m3u"_s, {u"A"_s, u"B"_s});
        row("hidden playlist", 0x40, u".P.M3U"_s, u"Music/_P.M3U"_s, {});
        row("video", 0x20, u"v.mov"_s, u"Movies/v.mov"_s, {});
        row("unknown", 0, u"x"_s, u"Download/x"_s, {});
    }

    void proposesPaths()
    {
        QFETCH(const quint32, kind);
        QFETCH(const QString, targetFileName);
        QFETCH(const QStringList, artistAndAlbum);
        const auto file = DRDCFile::fileWithSourcePath(u"/music/source.mp3"_s);
        file->setFileKind(kind);
        file->setMetadata(targetFileName, QLatin1StringView(DRDCFile::kTargetFileName));
        file->setMetadata(artistAndAlbum.value(0), QLatin1StringView(DRDCFile::kArtist));
        file->setMetadata(artistAndAlbum.value(1), QLatin1StringView(DRDCFile::kAlbum));
        QTEST(DRMediaPlacement::defaultPath(*file), "path");
    }

private:
    std::shared_ptr<DRFolderPhone> open(const QString& folder)
    {
        return DRFolderPhone::open(folder, m_queue, m_center);
    }

    QStringList copy(DRFolderPhone& phone, const QString& source, const QString& target)
    {
        QStringList reasons{u"the handler was not called"_s};
        phone.requestTask()->syncContentWithDevice(phone.shared_from_this(), phone, {fileToCopy(source, target)}, {},
                                                   [&reasons](const DRDCFileFailures& failures) {
                                                       reasons.clear();
                                                       for (const DRDCFileFailure& failure : *failures) {
                                                           reasons.append(failure.reason);
                                                       }
                                                   });
        m_queue.runAll();
        return reasons;
    }

    DRTestTaskQueue m_queue;
    DRNotificationCenter m_center;
};

QTEST_GUILESS_MAIN(TestFolderPhone)
#include "TestFolderPhone.moc"
