#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketPaths.h"
#include "model/packet/DRParallelDeflater.h"
#include "model/packet/DRTarHeader.h"
#include "tests/model/packet/DRTestArchive.h"

#include <QTest>

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
    void linesEndWithALineFeed();
    void headerIsAcceptedOrRefused_data();
    void headerIsAcceptedOrRefused();
    void encryptedPacketIsRefusedWithALogLine();
    void buffersInflateToWhatWasDeflated_data();
    void buffersInflateToWhatWasDeflated();
    void cutOrChangedBuffersDoNotInflate();
    void chunksFormOneStream_data();
    void chunksFormOneStream();
    void tarHeaderOfAnOrdinaryFile();
    void tarHeaderIsExtendedOnlyWhenNeeded_data();
    void tarHeaderIsExtendedOnlyWhenNeeded();
    void packetOrder_data();
    void packetOrder();
};

void TestPacketFormat::linesEndWithALineFeed()
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

void TestPacketFormat::headerIsAcceptedOrRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isAccepted");
    QTest::addColumn<bool>("isCompressed");
    const QByteArray start("ANDROID BACKUP\n1\n");
    QTest::newRow("compressed") << start + "1\nnone\n" << true << true;
    QTest::newRow("stored") << start + "0\nnone\n" << true << false;
    QTest::newRow("other encryption") << start + "1\nROT13\n" << true << true;
    QTest::newRow("encryption with CR") << start + "1\nAES-256\r\n" << true << true;
    QTest::newRow("yes") << start + "yes\nnone\n" << true << true;
    QTest::newRow("True") << start + "True\nnone\n" << true << true;
    QTest::newRow("no") << start + "no\nnone\n" << true << false;
    QTest::newRow("blanks, sign and zeros") << start + "  -007\nnone\n" << true << true;
    QTest::newRow("only zeros") << start + "+00\nnone\n" << true << false;
    QTest::newRow("compression with CR") << start + "1\r\nnone\n" << true << true;
    QTest::newRow("magic with CR") << QByteArray("ANDROID BACKUP\r\n1\n1\nnone\n") << false << false;
    QTest::newRow("version 2") << QByteArray("ANDROID BACKUP\n2\n1\nnone\n") << false << false;
    QTest::newRow("other magic") << QByteArray("ANDROID BACKUPS\n1\n1\nnone\n") << false << false;
    QTest::newRow("empty compression") << start + "\nnone\n" << false << false;
    QTest::newRow("empty encryption") << start + "1\n\n" << false << false;
    QTest::newRow("no fourth line feed") << start + "1\nnone" << false << false;
    QTest::newRow("nothing") << QByteArray() << false << false;
}

void TestPacketFormat::headerIsAcceptedOrRefused()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, isAccepted);
    const auto header = packetHeaderFromBytes(bytes);
    QCOMPARE(header.has_value(), isAccepted);
    if (header) {
        QTEST(header->isCompressed(), "isCompressed");
        QCOMPARE(header->payloadOffset, bytes.size());
    }
}

void TestPacketFormat::encryptedPacketIsRefusedWithALogLine()
{
    QTest::ignoreMessage(QtWarningMsg, "ExpandAndroidBackup->Encrypted format not supported, bailing");
    QVERIFY(!packetHeaderFromBytes("ANDROID BACKUP\n1\n1\nAES-256\n"));
}

void TestPacketFormat::buffersInflateToWhatWasDeflated_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one byte") << QByteArray("a");
    QTest::newRow("text") << rows(10000);
    QTest::newRow("noise") << DRTestArchive::noise(100000);
    QTest::newRow("zeros, a thousandth deflated") << QByteArray(5000000, '\0');
}

void TestPacketFormat::buffersInflateToWhatWasDeflated()
{
    QFETCH(const QByteArray, bytes);
    const auto deflated = zlibDeflate(bytes);
    QVERIFY(deflated);
    QVERIFY(deflated->startsWith("\x78\x9c"));
    QVERIFY(zlibInflate(*deflated) == bytes);
    QVERIFY(zlibInflate(*deflated + "what follows") == bytes);
}

void TestPacketFormat::cutOrChangedBuffersDoNotInflate()
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

void TestPacketFormat::chunksFormOneStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no bytes") << QByteArray();
    QTest::newRow("one byte") << QByteArray("a");
    QTest::newRow("exactly one chunk") << rows(30000).left(kChunkBytes);
    QTest::newRow("a last chunk of one byte") << rows(30000).left(kChunkBytes + 1);
    QTest::newRow("more chunks than memory for them") << rows(200000);
    QTest::newRow("noise") << DRTestArchive::noise(3 * kChunkBytes);
    QTest::newRow("zeros") << QByteArray(5000000, '\0');
}

void TestPacketFormat::chunksFormOneStream()
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

void TestPacketFormat::tarHeaderOfAnOrdinaryFile()
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

void TestPacketFormat::tarHeaderIsExtendedOnlyWhenNeeded_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<QByteArray>("records");
    const QByteArray folder(155, 'f');
    const QByteArray name(100, 'n');
    const quint64 eightGibibytes = quint64{8} << 30U;
    QTest::newRow("100 bytes") << name << quint64{1} << QByteArray();
    QTest::newRow("255 bytes, split") << folder + '/' + name << quint64{1} << QByteArray();
    QTest::newRow("name too long") << 'd' + QByteArray("/n") + name << quint64{1}
                                   << "9 size=1\n113 path=d/n" + name + '\n';
    QTest::newRow("folder too long") << 'f' + folder + '/' + name << quint64{1}
                                     << "9 size=1\n267 path=f" + folder + '/' + name + '\n';
    QTest::newRow("not ASCII") << QByteArray("é") << quint64{12} << QByteArray("11 size=12\n11 path=é\n");
    QTest::newRow("largest octal size") << QByteArray("a") << eightGibibytes - 1 << QByteArray();
    QTest::newRow("larger size") << QByteArray("a") << eightGibibytes << QByteArray("19 size=8589934592\n9 path=a\n");
}

void TestPacketFormat::tarHeaderIsExtendedOnlyWhenNeeded()
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

void TestPacketFormat::packetOrder_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QStringList>("ordered");
    const QStringList refused{u"refused"_s};
    QTest::newRow("manifest first, then bytes")
        << QStringList{u"apps/a/f/é"_s, u"apps/a/f/z"_s, u"apps/a/db/x"_s, u"apps/a/_manifest"_s,
                       u"apps/a/f/_manifest"_s}
        << QStringList{u"apps/a/_manifest"_s, u"apps/a/db/x"_s, u"apps/a/f/_manifest"_s, u"apps/a/f/z"_s,
                       u"apps/a/f/é"_s};
    QTest::newRow("dot names") << QStringList{u"./a"_s, u".b"_s, u"c/.d/e"_s, u"c/.f"_s, u"g."_s}
                               << QStringList{u"a"_s, u"g."_s};
    QTest::newRow("repeated") << QStringList{u"a"_s, u"b"_s, u"./a"_s} << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("absolute") << QStringList{u"/etc/passwd"_s} << refused;
    QTest::newRow("upwards") << QStringList{u"a/../../b"_s} << refused;
    QTest::newRow("empty") << QStringList{QString()} << refused;
    QTest::newRow("folder") << QStringList{u"a/"_s} << refused;
    QTest::newRow("NUL") << QStringList{u"a\0b"_s} << refused;
}

void TestPacketFormat::packetOrder()
{
    QFETCH(const QStringList, paths);
    const auto result = inPacketOrder(paths);
    QStringList ordered;
    for (const QByteArray& path : result.value_or(std::vector<QByteArray>{"refused"})) {
        ordered.append(QString::fromUtf8(path));
    }
    QTEST(ordered, "ordered");
}

QTEST_GUILESS_MAIN(TestPacketFormat)
#include "TestPacketFormat.moc"
