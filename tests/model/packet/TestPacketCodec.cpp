#include "model/packet/DRDiskReserve.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketComparison.h"
#include "model/packet/DRPacketExtraction.h"
#include "model/packet/DRPacketFolder.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRTarReader.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/model/packet/DRTestArchive.h"

#include <QtTest>

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <map>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using DRTestArchive::end;
using DRTestArchive::entry;
using DRTestArchive::file;
using DRTestArchive::packet;

namespace {

using Tree = std::map<QString, QByteArray>;

/// All that lies below the folder: files with their content, folders and others with their kind. Without the archive.
Tree treeOf(const QString& folder)
{
    Tree tree;
    QDirIterator found(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QFileInfo info(found.next());
        const QString path = QDir(folder).relativeFilePath(info.filePath());
        const bool isFile = info.isFile() && !info.isSymLink();
        tree[path] = isFile ? DRTestArchive::read(info.filePath()) : QByteArray(info.isDir() ? "<folder>" : "<other>");
    }
    tree.erase(u"expandBackup.tar"_s);
    return tree;
}

bool makeFiles(const QString& folder, const Tree& files)
{
    return std::ranges::all_of(files, [&folder](const auto& item) {
        const QString path = folder + u'/' + item.first;
        return QDir().mkpath(QFileInfo(path).path()) && DRTestArchive::write(path, item.second);
    });
}

QStringList namesOf(const Tree& files)
{
    QStringList names;
    std::ranges::transform(files, std::back_inserter(names), [](const auto& item) { return item.first; });
    return names;
}

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

class TestPacketCodec : public QObject {
    Q_OBJECT

    [[nodiscard]] QString path(const QString& name) const { return m_folder->filePath(name); }
    [[nodiscard]] bool expand(const QByteArray& bytes) const
    {
        return DRTestArchive::write(path(u"packet"_s), bytes) &&
               DRMigrateUtils::expandAndroidBackupPacket(path(u"packet"_s), path(u"out/in"_s));
    }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init();
    void packedFilesExpandAgain();
    void packetHoldsManifestFirst();
    void packingFailsAndKeepsThePacketBefore_data();
    void packingFailsAndKeepsThePacketBefore();
    void refusedPacketLeavesTheFolderAlone();
    void truncatedPacketEmptiesTheFolder();
    void storedPacketAndOddEndsExpand_data();
    void storedPacketAndOddEndsExpand();
    void hostileEntriesAreLeftOut_data();
    void hostileEntriesAreLeftOut();
    void extractedFilesAreOurs();
    void readBackSeesEveryChange();
    void packetThatWouldFillTheDiskIsStopped();
    void fullDiskFailsPackingAndExpanding();
    void filesAboveFourGibibytesAreRead();
    void workingFolderIsMadeAndEmptied();
    void dumpedDatabaseShowsItsRows();
};

void TestPacketCodec::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestPacketCodec::packedFilesExpandAgain()
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
    const QByteArray archive = DRTestArchive::read(path(u"from/compressBackup.tar"_s));
    QVERIFY(DRTestArchive::read(path(u"to/expandBackup.tar"_s)) == archive);
    const QByteArray bytes = DRTestArchive::read(path(u"from/fullbackupdata"_s));
    QVERIFY(bytes.startsWith("ANDROID BACKUP\n1\n1\nnone\n\x78\x9c"));
    QVERIFY(zlibInflate(bytes.mid(24)) == archive);
    QVERIFY(!zlibInflate(bytes.mid(24).chopped(1)));
    QCOMPARE(QDir(path(u"from"_s)).entryList(QDir::Files | QDir::Hidden).size(), 2); // no temporary file is left
}

void TestPacketCodec::packetHoldsManifestFirst()
{
    const Tree files{{u"apps/p/A"_s, "12345"}, {u"apps/p/_manifest"_s, "1\n"}, {u"apps/p/a"_s, ""}};
    QVERIFY(makeFiles(path(u"from"_s), files));
    QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), namesOf(files), path(u"packet"_s)));
    const auto contents = packetContents(path(u"packet"_s));
    QVERIFY(contents);
    const std::vector<DRPacketFile> expected{{u"apps/p/_manifest"_s, 2}, {u"apps/p/A"_s, 5}, {u"apps/p/a"_s, 0}};
    QVERIFY(contents->files == expected);
    const QByteArray archive = DRTestArchive::read(path(u"from/compressBackup.tar"_s));
    QCOMPARE(archive.size(), 512 * (3 + 2 + 2));
    QCOMPARE(archive.right(1024), QByteArray(1024, '\0'));
}

void TestPacketCodec::packingFailsAndKeepsThePacketBefore_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::newRow("no files") << QStringList();
    QTest::newRow("missing") << QStringList{u"a"_s, u"missing"_s};
    QTest::newRow("folder") << QStringList{u"a"_s, u"d"_s};
    QTest::newRow("link") << QStringList{u"a"_s, u"link"_s};
    QTest::newRow("file behind a link") << QStringList{u"a"_s, u"links/f"_s};
    QTest::newRow("pipe") << QStringList{u"a"_s, u"pipe"_s};
    QTest::newRow("outside") << QStringList{u"a"_s, u"../from/a"_s};
    QTest::newRow("cannot be read") << QStringList{u"a"_s, u"memory"_s};
}

void TestPacketCodec::packingFailsAndKeepsThePacketBefore()
{
    QFETCH(const QStringList, names);
    const QString from = path(u"from"_s);
    QVERIFY(makeFiles(from, {{u"a"_s, "a"}, {u"d/f"_s, "f"}}));
    QVERIFY(QFile::link(u"a"_s, from + u"/link"_s) && QFile::link(u"d"_s, from + u"/links"_s));
    QCOMPARE(mkfifo(nativePath(from + u"/pipe"_s).constData(), 0600), 0);
    QVERIFY(DRTestArchive::write(path(u"packet"_s), "before"));
    QVERIFY(!DRMigrateUtils::compressAndroidBackupPacket(from, names, path(u"packet"_s)));
    QCOMPARE(DRTestArchive::read(path(u"packet"_s)), "before");
    QCOMPARE(QDir(from).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks), QStringList{u"a"_s});
}

void TestPacketCodec::refusedPacketLeavesTheFolderAlone()
{
    QVERIFY(makeFiles(path(u"out/in"_s), {{u"mine"_s, "kept"}}));
    QVERIFY(!expand("ANDROID BACKUP\n2\n1\nnone\n"));
    QCOMPARE(treeOf(path(u"out/in"_s)), (Tree{{u"mine"_s, "kept"}}));
    QVERIFY(expand(packet(file("new", "n") + end())));
    QCOMPARE(treeOf(path(u"out"_s)),
             (Tree{{u"in"_s, "<folder>"}, {u"in/expandBackup.tar"_s, file("new", "n") + end()}, {u"in/new"_s, "n"}}));
}

void TestPacketCodec::truncatedPacketEmptiesTheFolder()
{
    const QByteArray bytes =
        packet(file("apps/a/_manifest", "1\n") + file("apps/a/f/x", DRTestArchive::noise(100)) + end());
    QVERIFY(expand(bytes));
    QVERIFY(expand(bytes + "bytes after the end"));
    const qsizetype headerSize = 24;
    for (qsizetype size = headerSize + 1; size < bytes.size(); ++size) {
        QVERIFY2(!expand(bytes.left(size)), QByteArray::number(size).constData());
        QVERIFY(QDir(path(u"out/in"_s)).exists() &&
                QDir(path(u"out/in"_s)).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        QVERIFY(!packetContents(path(u"packet"_s)));
    }
    const QByteArray large = packet(file("a", "a") + file("b", DRTestArchive::noise(1'000'000)) + end());
    QVERIFY(!expand(large.chopped(1))); // all of it was extracted before the damage shows
    QVERIFY(treeOf(path(u"out/in"_s)).empty());
    QVERIFY(expand(bytes.left(headerSize))); // no payload at all is an empty archive
    QCOMPARE(DRTestArchive::read(path(u"out/in/expandBackup.tar"_s)), QByteArray(""));
}

void TestPacketCodec::storedPacketAndOddEndsExpand_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QStringList>("names");
    const QByteArray first = file("a", "first");
    const QByteArray longName = entry("././@LongLink", 'L', QByteArray(300, 'l') + '\0') + file("cut", "long");
    const QString manyNs(255, u'n');
    const QByteArray extended = entry("x", 'x', "265 path=" + manyNs.toUtf8() + "\n") + file("cut", "long");
    QTest::newRow("whole") << first + file("b", "") + end() << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("without end blocks") << first << QStringList{u"a"_s};
    QTest::newRow("a lone zero block") << first + QByteArray(512, '\0') << QStringList{u"a"_s};
    QTest::newRow("within a header") << first + file("b", "").left(100) << QStringList{u"a"_s};
    QTest::newRow("within a file") << first + file("b", QByteArray(2000, 'b')).left(1024)
                                   << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("damaged header") << first + QByteArray(512, 'z') + end() << QStringList{u"a"_s};
    QTest::newRow("no archive") << QByteArray("no archive") << QStringList();
    QTest::newRow("extended header") << extended + first + end() << QStringList{u"a"_s, manyNs};
    QTest::newRow("long name of GNU tar, too long for a file") << longName + first + end() << QStringList{u"a"_s};
}

void TestPacketCodec::storedPacketAndOddEndsExpand()
{
    QFETCH(const QByteArray, archive);
    QFETCH(const QStringList, names);
    for (const QByteArray& bytes : {packet(archive), "ANDROID BACKUP\n1\n0\nnone\n" + archive}) {
        QVERIFY(expand(bytes));
        QCOMPARE(namesOf(treeOf(path(u"out/in"_s))), names);
        QCOMPARE(DRTestArchive::read(path(u"out/in/expandBackup.tar"_s)), archive);
        QVERIFY(packetContents(path(u"packet"_s)));
    }
}

void TestPacketCodec::hostileEntriesAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<Tree>("tree");
    QTest::newRow("upwards") << file("../evil", "e") + file("a/../../evil", "e") << Tree{};
    QTest::newRow("absolute") << file("/evil-of-a-packet", "e") << Tree{};
    QTest::newRow("empty and dot components") << file("a//b", "e") + file("a/./b", "e") + file(".", "e") << Tree{};
    QTest::newRow("link and file through it")
        << entry("l", '2', {}, "..") + file("l/evil", "e") << Tree{{u"l"_s, "<folder>"}, {u"l/evil"_s, "e"}};
    QTest::newRow("hard link") << file("a", "a") + entry("h", '1', {}, "a") << Tree{{u"a"_s, "a"}};
    QTest::newRow("hard link out") << entry("h", '1', {}, "/etc/passwd") << Tree{};
    QTest::newRow("devices and pipe") << entry("c", '3') + entry("b", '4') + entry("p", '6') << Tree{};
    QTest::newRow("later replaces earlier")
        << file("a", "longer first") + file("a", "second") << Tree{{u"a"_s, "second"}};
    QTest::newRow("file where a folder is")
        << file("d/f", "f") + file("d", "e") << Tree{{u"d"_s, "<folder>"}, {u"d/f"_s, "f"}};
    QTest::newRow("folder where a file is")
        << file("d", "f") + file("d/f", "e") + entry("d/", '5') << Tree{{u"d"_s, "f"}};
    QTest::newRow("name of the archive") << file("expandBackup.tar/f", "e") + file("expandBackup.tar", "e") << Tree{};
    QTest::newRow("very deep") << entry("x", 'x', "619 path=" + QByteArray("d/").repeated(304) + "f\n") + file("f", "e")
                               << Tree{};
    QTest::newRow("current folder") << entry("./", '5') + file("./a", "a") + entry("./d/", '5')
                                    << Tree{{u"a"_s, "a"}, {u"d"_s, "<folder>"}};
}

void TestPacketCodec::hostileEntriesAreLeftOut()
{
    QFETCH(const QByteArray, archive);
    QVERIFY(expand(packet(archive + file("last", "l") + end())));
    Tree tree = treeOf(path(u"out/in"_s));
    QCOMPARE(tree[u"last"_s], "l"); // reading goes on after what is left out
    tree.erase(u"last"_s);
    QTEST(tree, "tree");
    QCOMPARE(QDir(path(u"out"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"in"_s});
    QVERIFY(!QFile::exists(u"/evil-of-a-packet"_s));
}

void TestPacketCodec::extractedFilesAreOurs()
{
    QVERIFY(expand(packet(entry("d/", '5') + file("d/f", "f") + end())));
    const auto status = statusWithoutFollowing(path(u"out/in/d/f"_s));
    QVERIFY(status);
    QCOMPARE(status->st_mode & 07777U, 0600U); // the archive says set-uid
    QCOMPARE(status->st_mtim.tv_sec, 010000000000);
    QCOMPARE(statusWithoutFollowing(path(u"out/in/d"_s))->st_mode & 07777U, 0700U);
}

void TestPacketCodec::readBackSeesEveryChange()
{
    QVERIFY(makeFiles(path(u"from"_s), {{u"a"_s, "some text, some text"}}));
    QVERIFY(DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), {u"a"_s}, path(u"packet"_s)));
    const QByteArray bytes = DRTestArchive::read(path(u"packet"_s));
    const QByteArray archive = DRTestArchive::read(path(u"from/compressBackup.tar"_s));
    const auto isSame = [this](const QByteArray& packetBytes, const QByteArray& archiveBytes) {
        const bool areWritten =
            DRTestArchive::write(path(u"p"_s), packetBytes) && DRTestArchive::write(path(u"t"_s), archiveBytes);
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

void TestPacketCodec::packetThatWouldFillTheDiskIsStopped()
{
    const QByteArray archive = file("a", QByteArray(1000, 'a')) + end();
    const auto isExtracted = [&](quint64 reserveBytes) {
        DRPacketFolder folder(m_folder->path());
        DRDiskReserve reserve(folder.root().number(), reserveBytes);
        QByteArray rest = archive;
        DRTarReader reader([&rest, part = QByteArray()]() mutable {
            part = std::exchange(rest, {});
            return std::span<const char>(part.constData(), static_cast<std::size_t>(part.size()));
        });
        return extractArchive(reader, folder, reserve).isWritten;
    };
    QVERIFY(isExtracted(0));
    QVERIFY(!isExtracted(std::numeric_limits<quint64>::max()));
}

void TestPacketCodec::fullDiskFailsPackingAndExpanding()
{
    const SmallDisk disk(path(u"small"_s), "size=4m");
    if (!disk.isMounted()) {
        QSKIP("a small file system cannot be mounted here");
    }
    const QByteArray bomb = packet(file("zeros", QByteArray(20'000'000, '\0')) + end());
    QVERIFY(DRTestArchive::write(path(u"bomb"_s), bomb));
    QVERIFY(!DRMigrateUtils::expandAndroidBackupPacket(path(u"bomb"_s), path(u"small/out"_s)));
    QVERIFY(treeOf(path(u"small/out"_s)).empty());

    QVERIFY(makeFiles(path(u"from"_s), {{u"noise"_s, DRTestArchive::noise(5'000'000)}}));
    QVERIFY(DRTestArchive::write(path(u"small/packet"_s), "before"));
    QVERIFY(!DRMigrateUtils::compressAndroidBackupPacket(path(u"from"_s), {u"noise"_s}, path(u"small/packet"_s)));
    QCOMPARE(DRTestArchive::read(path(u"small/packet"_s)), "before");
    QCOMPARE(namesOf(treeOf(path(u"small"_s))), (QStringList{u"out"_s, u"packet"_s}));
}

/// A stored packet with a hole: a file of more than four gibibytes, and one behind it.
void TestPacketCodec::filesAboveFourGibibytesAreRead()
{
    const qint64 size = (qint64{4} << 30U) + 1000;
    QByteArray large = file("large", {});
    large.replace(124, 11, QByteArray::number(size, 8).rightJustified(11, '0'));
    large.replace(148, 8, "        ");
    const auto add = [](int sum, char byte) { return sum + static_cast<unsigned char>(byte); };
    large.replace(148, 6,
                  QByteArray::number(std::accumulate(large.cbegin(), large.cend(), 0, add), 8).rightJustified(6, '0'));
    QFile target(path(u"packet"_s));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("ANDROID BACKUP\n1\n0\nnone\n" + large);
    target.seek(24 + 512 + size + (512 - size % 512) % 512);
    target.write(file("after", "a") + end());
    target.close();
    const auto contents = packetContents(path(u"packet"_s));
    QVERIFY(contents);
    const std::vector<DRPacketFile> expected{{u"large"_s, static_cast<quint64>(size)}, {u"after"_s, 1}};
    QVERIFY(contents->files == expected);
}

void TestPacketCodec::workingFolderIsMadeAndEmptied()
{
    const QString folder = DRMigrateUtils::pathToInflateFolder(path(u"new/deep"_s));
    QCOMPARE(folder, path(u"new/deep/TarvexTransfer"_s));
    QCOMPARE(statusWithoutFollowing(folder)->st_mode & 07777U, 0700U);
    QVERIFY(makeFiles(folder, {{u"p/x"_s, "x"}}));
    QVERIFY(DRMigrateUtils::clearTempFolder(path(u"new/deep"_s)));
    QVERIFY(QDir(folder).exists() && treeOf(folder).empty());
}

void TestPacketCodec::dumpedDatabaseShowsItsRows()
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

QTEST_GUILESS_MAIN(TestPacketCodec)
#include "TestPacketCodec.moc"
