#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketPaths.h"
#include "model/packet/DRParallelDeflater.h"
#include "model/packet/DRTarHeader.h"
#include "tests/model/packet/DRTestArchive.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kChunkBytes = qsizetype{DRParallelDeflater::kChunkBytes};

/// A text of database rows, much alike.
QByteArray rows(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        text += "INSERT INTO sms VALUES(" + QByteArray::number(i * 7919) + ",'hello');\n";
    }
    return text;
}

QByteArray deflatedInParallel(const QByteArray& bytes, int threads, const DRParallelDeflater::DeflaterFactory& factory)
{
    QByteArray stream;
    DRParallelDeflater deflater(threads, factory, [&stream](std::span<const char> part) {
        stream.append(part.data(), static_cast<qsizetype>(part.size()));
        return true;
    });
    bool isFine = true;
    for (qsizetype start = 0; start < bytes.size(); start += kChunkBytes) {
        const QByteArray chunk = bytes.mid(start, kChunkBytes);
        std::ranges::copy(chunk, deflater.chunk().begin());
        isFine = deflater.commit(static_cast<std::size_t>(chunk.size())) && isFine;
    }
    return deflater.finish() && isFine ? stream : QByteArray();
}

} // namespace

class TestPacketFormat : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesEndWithALineFeed()
    {
        const QByteArray data("first\n\xe9\r\n\nrest");
        qsizetype offset = 0;
        QCOMPARE(DRMigrateUtils::lineFromData(data, 0, offset), u"first"_s);
        QCOMPARE(DRMigrateUtils::lineFromData(data, offset, offset), u"é\r"_s);
        const QString empty = DRMigrateUtils::lineFromData(data, offset, offset);
        QVERIFY(empty.isEmpty() && !empty.isNull());
        QCOMPARE(offset, 10);
        QVERIFY(DRMigrateUtils::lineFromData(data, offset, offset).isNull());
        QCOMPARE(offset, 10);
    }

    void headerIsAcceptedOrRefused_data()
    {
        const DRTestTable<QByteArray, bool, bool> row("bytes", "isAccepted", "isCompressed");
        const QByteArray start("ANDROID BACKUP\n1\n");
        row("compressed", start + "1\nnone\n", true, true);
        row("stored", start + "0\nnone\n", true, false);
        row("other encryption", start + "1\nROT13\n", true, true);
        row("encryption with CR", start + "1\nAES-256\r\n", true, true);
        row("yes", start + "yes\nnone\n", true, true);
        row("True", start + "True\nnone\n", true, true);
        row("no", start + "no\nnone\n", true, false);
        row("blanks, sign and zeros", start + "  -007\nnone\n", true, true);
        row("only zeros", start + "+00\nnone\n", true, false);
        row("compression with CR", start + "1\r\nnone\n", true, true);
        row("magic with CR", "ANDROID BACKUP\r\n1\n1\nnone\n", false, false);
        row("version 2", "ANDROID BACKUP\n2\n1\nnone\n", false, false);
        row("other magic", "ANDROID BACKUPS\n1\n1\nnone\n", false, false);
        row("empty compression", start + "\nnone\n", false, false);
        row("empty encryption", start + "1\n\n", false, false);
        row("no fourth line feed", start + "1\nnone", false, false);
        row("nothing", {}, false, false);
    }

    void headerIsAcceptedOrRefused()
    {
        QFETCH(const QByteArray, bytes);
        const auto header = packetHeaderFromBytes(bytes);
        QTEST(header.has_value(), "isAccepted");
        if (header) {
            QTEST(header->isCompressed(), "isCompressed");
            QCOMPARE(header->payloadOffset, bytes.size());
        }
    }

    void encryptedPacketIsRefusedWithALogLine()
    {
        QTest::ignoreMessage(QtWarningMsg, "ExpandAndroidBackup->Encrypted format not supported, bailing");
        QVERIFY(!packetHeaderFromBytes("ANDROID BACKUP\n1\n1\nAES-256\n"));
    }

    void buffersInflateToWhatWasDeflated_data()
    {
        const DRTestTable<QByteArray> row("bytes");
        row("one byte", "a");
        row("text", rows(10000));
        row("noise", DRTestArchive::noise(100000));
        row("zeros, a thousandth deflated", QByteArray(5000000, '\0'));
    }

    void buffersInflateToWhatWasDeflated()
    {
        QFETCH(const QByteArray, bytes);
        const auto deflated = zlibDeflate(bytes);
        QVERIFY(deflated);
        QVERIFY(deflated->startsWith("\x78\x9c"));
        QVERIFY(zlibInflate(*deflated) == bytes);
        QVERIFY(zlibInflate(*deflated + "what follows") == bytes);
    }

    void cutOrChangedBuffersDoNotInflate()
    {
        QCOMPARE(zlibInflate(QByteArray()), QByteArray());
        QCOMPARE(zlibDeflate(QByteArray()), QByteArray());
        const QByteArray deflated = zlibDeflate(rows(20)).value_or(QByteArray());
        for (qsizetype size = 1; size < deflated.size(); ++size) {
            QVERIFY2(!zlibInflate(deflated.left(size)), QByteArray::number(size).constData());
        }
        QByteArray changed = deflated;
        changed.back() = static_cast<char>(changed.back() ^ 1);
        QVERIFY(!zlibInflate(changed));
        QVERIFY(!zlibInflate(QByteArray::fromHex("78bb00000000030000000001"))); // wants a dictionary
    }

    void chunksFormOneStream_data()
    {
        const DRTestTable<QByteArray> row("bytes");
        row("no bytes", {});
        row("one byte", "a");
        row("exactly one chunk", rows(30000).left(kChunkBytes));
        row("a last chunk of one byte", rows(30000).left(kChunkBytes + 1));
        row("more chunks than memory for them", rows(200000));
        row("noise", DRTestArchive::noise(3 * kChunkBytes));
        row("zeros", QByteArray(5000000, '\0'));
    }

    void chunksFormOneStream()
    {
        QFETCH(const QByteArray, bytes);
        for (const auto& factory : {makeFastChunkDeflater, makeZlibChunkDeflater}) {
            const QByteArray stream = deflatedInParallel(bytes, 2, factory);
            QVERIFY(stream.startsWith("\x78\x9c"));
            QVERIFY(zlibInflate(stream) == bytes);
            QVERIFY(!zlibInflate(stream.chopped(1))); // so nothing follows the stream's end
            QVERIFY(deflatedInParallel(bytes, 1, factory) == stream);
            QVERIFY(deflatedInParallel(bytes, 5, factory) == stream);
        }
    }

    void tarHeaderOfAnOrdinaryFile()
    {
        QByteArray expected(512, '\0');
        const auto put = [&expected](qsizetype offset, const QByteArray& text) {
            expected.replace(offset, text.size(), text);
        };
        put(0, "apps/a.b/_manifest");
        put(100, "0000600");
        put(108, "0000000");
        put(116, "0000000");
        put(124, "00000000777");
        put(136, "11145401322");
        put(148, QByteArray("011273\0 ", 8));
        put(156, "0");
        put(257, QByteArray("ustar\00000", 8));
        QCOMPARE(tarHeader("apps/a.b/_manifest", 0777, 1234567890), expected);
    }

    void tarHeaderIsExtendedOnlyWhenNeeded_data()
    {
        const DRTestTable<QByteArray, quint64, QByteArray> row("path", "size", "records");
        const QByteArray folder(155, 'f');
        const QByteArray name(100, 'n');
        const quint64 eightGibibytes = quint64{8} << 30U;
        row("100 bytes", name, 1, {});
        row("255 bytes, split", folder + '/' + name, 1, {});
        row("name too long", 'd' + QByteArray("/n") + name, 1, "9 size=1\n113 path=d/n" + name + '\n');
        row("folder too long", 'f' + folder + '/' + name, 1, "9 size=1\n267 path=f" + folder + '/' + name + '\n');
        row("not ASCII", "é", 12, "11 size=12\n11 path=é\n");
        row("largest octal size", "a", eightGibibytes - 1, {});
        row("larger size", "a", eightGibibytes, "19 size=8589934592\n9 path=a\n");
    }

    void tarHeaderIsExtendedOnlyWhenNeeded()
    {
        QFETCH(const QByteArray, path);
        QFETCH(const quint64, size);
        QFETCH(const QByteArray, records);
        const QByteArray header = tarHeader(path, size, 0);
        QCOMPARE(header.size() % 512, 0);
        QCOMPARE(header.at(header.size() - 512 + 156), '0');
        if (records.isEmpty()) {
            QCOMPARE(header.size(), 512);
            const QByteArray prefix(header.constData() + 345);
            QCOMPARE((prefix.isEmpty() ? QByteArray() : prefix + '/') + header.left(100).constData(), path);
            return;
        }
        QCOMPARE(header.at(156), 'x');
        QCOMPARE(header.mid(124, 11).toLongLong(nullptr, 8), records.size());
        QCOMPARE(header.mid(512, records.size()), records);
    }

    void packetOrder_data()
    {
        const DRTestTable<QStringList, QStringList> row("paths", "ordered");
        const QStringList refused{u"refused"_s};
        row("manifest first, then bytes",
            {u"apps/a/f/é"_s, u"apps/a/f/z"_s, u"apps/a/db/x"_s, u"apps/a/_manifest"_s, u"apps/a/f/_manifest"_s},
            {u"apps/a/_manifest"_s, u"apps/a/db/x"_s, u"apps/a/f/_manifest"_s, u"apps/a/f/z"_s, u"apps/a/f/é"_s});
        row("dot names", {u"./a"_s, u".b"_s, u"c/.d/e"_s, u"c/.f"_s, u"g."_s}, {u"a"_s, u"g."_s});
        row("repeated", {u"a"_s, u"b"_s, u"./a"_s}, {u"a"_s, u"b"_s});
        row("absolute", {u"/etc/passwd"_s}, refused);
        row("upwards", {u"a/../../b"_s}, refused);
        row("empty", {QString()}, refused);
        row("folder", {u"a/"_s}, refused);
        row("NUL", {u"a\0b"_s}, refused);
    }

    void packetOrder()
    {
        QFETCH(const QStringList, paths);
        const auto result = inPacketOrder(paths);
        QStringList ordered;
        for (const QByteArray& path : result.value_or(std::vector<QByteArray>{"refused"})) {
            ordered.append(QString::fromUtf8(path));
        }
        QTEST(ordered, "ordered");
    }
};

QTEST_GUILESS_MAIN(TestPacketFormat)
#include "TestPacketFormat.moc"
