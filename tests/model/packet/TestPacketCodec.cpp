#include "model/packet/DRPacketComparison.h"
#include "model/packet/DRPacketHeader.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/model/packet/DRPacketFixture.h"
#include "tests/support/DRTestTable.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using DRTestArchive::end;
using DRTestArchive::file;
using DRTestArchive::packet;

namespace {

/// A small file system of its own, where the test may mount one.
class SmallDisk {
public:
    SmallDisk(QString path, const char* options) : m_path(std::move(path))
    {
        m_isMounted = QDir().mkpath(m_path) && mount("none", nativePath(m_path).constData(), "tmpfs", 0, options) == 0;
    }
    ~SmallDisk()
    {
        if (m_isMounted) {
            umount(nativePath(m_path).constData());
        }
    }
    Q_DISABLE_COPY_MOVE(SmallDisk)
    [[nodiscard]] bool isMounted() const { return m_isMounted; }

private:
    QString m_path;
    bool m_isMounted = false;
};

} // namespace

/// Packets that go out, and what they are when they come back.
class TestPacketCodec : public DRPacketTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(makeFolder()); }

    void packedFilesExpandAgain()
    {
        const QString longName(120, u'n');
        const QString longPath = u"apps/a/f/"_s + QString(200, u'd') + u'/' + QString(200, u'e') + u'/' + longName;
        Tree files{{u"apps/a/_manifest"_s, "1\na\n"},
                   {u"apps/a/f/empty"_s, ""},
                   {u"apps/a/f/block"_s, QByteArray(512, 'b')},
                   {u"apps/a/f/"_s + longName, "long"},
                   {u"apps/a/f/"_s + QString(90, u'x') + u'/' + QString(90, u'y'), "split"},
                   {longPath, "longer"},
                   {u"apps/a/db/Grüße 🎉"_s, "unicode"},
                   {u"apps/a/r/noise"_s, DRTestArchive::noise(3'000'000)}};
        for (int i = 0; i < 500; ++i) {
            files[u"apps/a/f/many/%1"_s.arg(i)] = QByteArray::number(i);
        }
        QVERIFY(makeFiles(path(u"from"_s), files));
        QVERIFY(makeFiles(path(u"from"_s), {{u"apps/a/.hidden"_s, "h"}, {u"apps/.d/file"_s, "d"}}));
        const QStringList names = namesOf(files) << u"apps/a/.hidden"_s << u"apps/.d/file"_s;
        QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), names, path(u"from/fullbackupdata"_s)));

        QVERIFY(DRMigrateUtils::expandAndroidBackupPacket(path(u"from/fullbackupdata"_s), path(u"to"_s)));
        Tree expanded = treeOf(path(u"to"_s));
        std::erase_if(expanded, [](const auto& item) { return item.second == "<folder>"; });
        QCOMPARE(namesOf(expanded), namesOf(files));
        QVERIFY(expanded == files);
        const QByteArray archive = readFile(path(u"from/compressBackup.tar"_s));
        QVERIFY(readFile(path(u"to/expandBackup.tar"_s)) == archive);
        const QByteArray bytes = readFile(path(u"from/fullbackupdata"_s));
        QVERIFY(bytes.startsWith("ANDROID BACKUP\n1\n1\nnone\n\x78\x9c"));
        QVERIFY(zlibInflate(bytes.mid(24)) == archive);
        QVERIFY(!zlibInflate(bytes.mid(24).chopped(1)));
        QCOMPARE(QDir(path(u"from"_s)).entryList(QDir::Files | QDir::Hidden).size(), 2); // no temporary file is left
    }

    void packetHoldsManifestFirst()
    {
        const Tree files{{u"apps/p/A"_s, "12345"}, {u"apps/p/_manifest"_s, "1\n"}, {u"apps/p/a"_s, ""}};
        QVERIFY(makeFiles(path(u"from"_s), files));
        QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), namesOf(files), path(u"packet"_s)));
        const auto contents = packetContents(path(u"packet"_s));
        QVERIFY(contents);
        const std::vector<DRPacketFile> expected{{u"apps/p/_manifest"_s, 2}, {u"apps/p/A"_s, 5}, {u"apps/p/a"_s, 0}};
        QVERIFY(contents->files == expected);
        const QByteArray archive = readFile(path(u"from/compressBackup.tar"_s));
        QCOMPARE(archive.size(), 512 * (3 + 2 + 2));
        QCOMPARE(archive.right(1024), QByteArray(1024, '\0'));
    }

    void packingFailsAndKeepsThePacketBefore_data()
    {
        const DRTestTable<QStringList> row("names");
        row("no files", {});
        row("missing", {u"a"_s, u"missing"_s});
        row("folder", {u"a"_s, u"d"_s});
        row("link", {u"a"_s, u"link"_s});
        row("file behind a link", {u"a"_s, u"links/f"_s});
        row("pipe", {u"a"_s, u"pipe"_s});
        row("outside", {u"a"_s, u"../from/a"_s});
        row("cannot be read", {u"a"_s, u"memory"_s});
    }

    void packingFailsAndKeepsThePacketBefore()
    {
        QFETCH(const QStringList, names);
        const QString from = path(u"from"_s);
        QVERIFY(makeFiles(from, {{u"a"_s, "a"}, {u"d/f"_s, "f"}}));
        QVERIFY(QFile::link(u"a"_s, from + u"/link"_s) && QFile::link(u"d"_s, from + u"/links"_s));
        QCOMPARE(mkfifo(nativePath(from + u"/pipe"_s).constData(), 0600), 0);
        QVERIFY(writeFile(path(u"packet"_s), "before"));
        QVERIFY(!DRMigrateUtils::compressAndroidBackupPacket(from, names, path(u"packet"_s)));
        QCOMPARE(readFile(path(u"packet"_s)), "before");
        QCOMPARE(QDir(from).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks), QStringList{u"a"_s});
    }

    void readBackSeesEveryChange()
    {
        QVERIFY(makeFiles(path(u"from"_s), {{u"a"_s, "some text, some text"}}));
        QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), {u"a"_s}, path(u"packet"_s)));
        const QByteArray bytes = readFile(path(u"packet"_s));
        const QByteArray archive = readFile(path(u"from/compressBackup.tar"_s));
        const auto isSame = [this](const QByteArray& packetBytes, const QByteArray& archiveBytes) {
            const bool areWritten = writeFile(path(u"p"_s), packetBytes) && writeFile(path(u"t"_s), archiveBytes);
            return areWritten && packetHoldsArchive(path(u"p"_s), DRFileDescriptor::openRegularFile(path(u"t"_s)));
        };
        QVERIFY(isSame(bytes, archive));
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            QVERIFY2(!isSame(bytes.left(i), archive), QByteArray::number(i).constData());
        }
        for (qsizetype i = 26; i < bytes.size(); ++i) {
            QByteArray changed = bytes;
            changed[i] = static_cast<char>(changed[i] ^ 0x10);
            const bool isHarmless = zlibInflate(changed.mid(24)) == archive; // a bit of padding
            QVERIFY2(isSame(changed, archive) == isHarmless, QByteArray::number(i).constData());
        }
        QVERIFY(!isSame(bytes + '\0', archive));
        QVERIFY(!isSame(bytes, archive + '\0'));
        QVERIFY(!isSame(bytes, archive.chopped(1)));
        QVERIFY(!isSame(bytes, QByteArray(archive).replace("some", "same")));
    }

    void fullDiskFailsPackingAndExpanding()
    {
        const SmallDisk disk(path(u"small"_s), "size=4m");
        if (!disk.isMounted()) {
            QSKIP("a small file system cannot be mounted here");
        }
        const QByteArray bomb = packet(file("zeros", QByteArray(20'000'000, '\0')) + end());
        QVERIFY(writeFile(path(u"bomb"_s), bomb));
        QVERIFY(!DRMigrateUtils::expandAndroidBackupPacket(path(u"bomb"_s), path(u"small/out"_s)));
        QVERIFY(treeOf(path(u"small/out"_s)).empty());

        QVERIFY(makeFiles(path(u"from"_s), {{u"noise"_s, DRTestArchive::noise(5'000'000)}}));
        QVERIFY(writeFile(path(u"small/packet"_s), "before"));
        QVERIFY(!DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), {u"noise"_s}, path(u"small/packet"_s)));
        QCOMPARE(readFile(path(u"small/packet"_s)), "before");
        QCOMPARE(namesOf(treeOf(path(u"small"_s))), (QStringList{u"out"_s, u"packet"_s}));
    }

    void workingFolderIsMadeAndEmptied()
    {
        const QString folder = DRMigrateUtils::pathToInflateFolder(path(u"new/deep"_s));
        QCOMPARE(folder, path(u"new/deep/TarvexTransfer"_s));
        QCOMPARE(statusWithoutFollowing(folder)->st_mode & 07777U, 0700U);
        QVERIFY(makeFiles(folder, {{u"p/x"_s, "x"}}));
        QVERIFY(DRMigrateUtils::clearTempFolder(path(u"new/deep"_s)));
        QVERIFY(QDir(folder).exists() && treeOf(folder).empty());
    }

    void dumpedDatabaseShowsItsRows()
    {
        {
            auto database = DRDatabase::open(path(u"db"_s), DRDatabase::Profile::Create);
            QVERIFY(database && database->executeScript(u"CREATE TABLE b(n INTEGER, t); INSERT INTO b VALUES(7, NULL);"
                                                        "CREATE TABLE a(x TEXT); CREATE TABLE \"odd name\"(x);"_s));
        }
        const QByteArray rule("-----------------------\nTable name:");
        const QByteArray summary =
            rule + "a\n----\nCount: 0\nx\n" + rule + "b\n----\nCount: 1\nn\nt\n" + rule + "odd name\n----\nCount: 0\n";
        QTest::ignoreMessage(QtInfoMsg, "\n\nb:\nn (INTEGER): 7\nt (): (null)\n");
        QTest::ignoreMessage(QtInfoMsg, summary.constData());
        DRMigrateUtils::dumpDatabase(path(u"db"_s));
        QTest::ignoreMessage(QtInfoMsg, "\n");
        DRMigrateUtils::dumpDatabase(path(u"missing"_s));
    }
};

QTEST_GUILESS_MAIN(TestPacketCodec)
#include "TestPacketCodec.moc"
