#include "model/packet/DRDiskReserve.h"
#include "model/packet/DRPacketExtraction.h"
#include "model/packet/DRPacketFolder.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRTarReader.h"
#include "platform/core/DRFileDescriptor.h"
#include "tests/model/packet/DRPacketFixture.h"
#include "tests/support/DRTestTable.h"

#include <limits>
#include <numeric>

using namespace Qt::StringLiterals;
using DRTestArchive::end;
using DRTestArchive::entry;
using DRTestArchive::file;
using DRTestArchive::packet;

/// Packets that come in: damaged, cut, hostile, large.
class TestPacketExpansion : public DRPacketTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(makeFolder()); }

    void refusedPacketLeavesTheFolderAlone()
    {
        QVERIFY(makeFiles(path(u"out/in"_s), {{u"mine"_s, "kept"}}));
        QVERIFY(!expand("ANDROID BACKUP\n2\n1\nnone\n"));
        QCOMPARE(treeOf(path(u"out/in"_s)), (Tree{{u"mine"_s, "kept"}}));
        QVERIFY(expand(packet(file("new", "n") + end())));
        QCOMPARE(
            treeOf(path(u"out"_s)),
            (Tree{{u"in"_s, "<folder>"}, {u"in/expandBackup.tar"_s, file("new", "n") + end()}, {u"in/new"_s, "n"}}));
    }

    void truncatedPacketEmptiesTheFolder()
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
        QCOMPARE(readFile(path(u"out/in/expandBackup.tar"_s)), QByteArray(""));
    }

    void storedPacketAndOddEndsExpand_data()
    {
        const DRTestTable<QByteArray, QStringList> row("archive", "names");
        const QByteArray first = file("a", "first");
        const QByteArray longName = entry("././@LongLink", 'L', QByteArray(300, 'l') + '\0') + file("cut", "long");
        const QString manyNs(255, u'n');
        const QByteArray extended = entry("x", 'x', "265 path=" + manyNs.toUtf8() + "\n") + file("cut", "long");
        row("whole", first + file("b", "") + end(), {u"a"_s, u"b"_s});
        row("without end blocks", first, {u"a"_s});
        row("a lone zero block", first + QByteArray(512, '\0'), {u"a"_s});
        row("within a header", first + file("b", "").left(100), {u"a"_s});
        row("within a file", first + file("b", QByteArray(2000, 'b')).left(1024), {u"a"_s, u"b"_s});
        row("damaged header", first + QByteArray(512, 'z') + end(), {u"a"_s});
        row("no archive", "no archive", {});
        row("extended header", extended + first + end(), {u"a"_s, manyNs});
        row("long name of GNU tar, too long for a file", longName + first + end(), {u"a"_s});
    }

    void storedPacketAndOddEndsExpand()
    {
        QFETCH(const QByteArray, archive);
        for (const QByteArray& bytes : {packet(archive), "ANDROID BACKUP\n1\n0\nnone\n" + archive}) {
            QVERIFY(expand(bytes));
            QTEST(namesOf(treeOf(path(u"out/in"_s))), "names");
            QCOMPARE(readFile(path(u"out/in/expandBackup.tar"_s)), archive);
            QVERIFY(packetContents(path(u"packet"_s)));
        }
    }

    void hostileEntriesAreLeftOut_data()
    {
        const DRTestTable<QByteArray, Tree> row("archive", "tree");
        row("upwards", file("../evil", "e") + file("a/../../evil", "e"), {});
        row("absolute", file("/evil-of-a-packet", "e"), {});
        row("empty and dot components", file("a//b", "e") + file("a/./b", "e") + file(".", "e"), {});
        row("link and file through it", entry("l", '2', {}, "..") + file("l/evil", "e"),
            {{u"l"_s, "<folder>"}, {u"l/evil"_s, "e"}});
        row("hard link", file("a", "a") + entry("h", '1', {}, "a"), {{u"a"_s, "a"}});
        row("hard link out", entry("h", '1', {}, "/etc/passwd"), {});
        row("devices and pipe", entry("c", '3') + entry("b", '4') + entry("p", '6'), {});
        row("later replaces earlier", file("a", "longer first") + file("a", "second"), {{u"a"_s, "second"}});
        row("file where a folder is", file("d/f", "f") + file("d", "e"), {{u"d"_s, "<folder>"}, {u"d/f"_s, "f"}});
        row("folder where a file is", file("d", "f") + file("d/f", "e") + entry("d/", '5'), {{u"d"_s, "f"}});
        row("name of the archive", file("expandBackup.tar/f", "e") + file("expandBackup.tar", "e"), {});
        row("very deep", entry("x", 'x', "619 path=" + QByteArray("d/").repeated(304) + "f\n") + file("f", "e"), {});
        row("current folder", entry("./", '5') + file("./a", "a") + entry("./d/", '5'),
            {{u"a"_s, "a"}, {u"d"_s, "<folder>"}});
    }

    void hostileEntriesAreLeftOut()
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

    void extractedFilesAreOurs()
    {
        QVERIFY(expand(packet(entry("d/", '5') + file("d/f", "f") + end())));
        const auto status = statusWithoutFollowing(path(u"out/in/d/f"_s));
        QVERIFY(status);
        QCOMPARE(status->st_mode & 07777U, 0600U); // the archive says set-uid
        QCOMPARE(status->st_mtim.tv_sec, 010000000000);
        QCOMPARE(statusWithoutFollowing(path(u"out/in/d"_s))->st_mode & 07777U, 0700U);
    }

    void packetThatWouldFillTheDiskIsStopped()
    {
        const QByteArray archive = file("a", QByteArray(1000, 'a')) + end();
        const auto isExtracted = [&](quint64 reserveBytes) {
            DRPacketFolder folder(path());
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

    /// A stored packet with a hole: a file of more than four gibibytes, and one behind it.
    void filesAboveFourGibibytesAreRead()
    {
        const qint64 size = (qint64{4} << 30U) + 1000;
        QByteArray large = file("large", {});
        large.replace(124, 11, QByteArray::number(size, 8).rightJustified(11, '0'));
        large.replace(148, 8, "        ");
        const auto add = [](int sum, char byte) { return sum + static_cast<unsigned char>(byte); };
        large.replace(
            148, 6,
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
};

QTEST_GUILESS_MAIN(TestPacketExpansion)
#include "TestPacketExpansion.moc"
