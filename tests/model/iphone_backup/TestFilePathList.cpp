#include "model/iphone_backup/DRFilePathList.h"
#include "platform/data/DRAbstractData.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kHeader = QByteArray::fromHex("6d626462 0500");

/// The record of the worked example in docs/formats/backup-folder.md.
const QByteArray kExample = QByteArray::fromHex("000a 486f6d65446f6d61696e 000d 4c6962726172792f612e747874 ffff"
                                                "0014 a9993e364706816aba3e25717850c26c9cd0d89d ffff"
                                                "81a4 0000000000004e21 000001f5000001f5 536738d9 51593259 51593259"
                                                "0000000000000003 03 01 0003746167 000200ff");
const QString kExampleText = u"HomeDomain-Library/a.txt"_s;
constexpr qsizetype kBytesFromInodeToTimes = 28;
constexpr qsizetype kBytesBehindExampleSize = 1 + 1 + 5 + 4;

QByteArray string(const QByteArray& bytes)
{
    std::array<char, 2> length{};
    qToBigEndian(static_cast<quint16>(bytes.size()), length.data());
    return QByteArray(length.data(), length.size()) + bytes;
}

/// A record without properties; domain and path as they stand in the manifest.
QByteArray record(const QByteArray& domain, const QByteArray& path, quint64 sizeBytes = 1)
{
    std::array<char, 8> size{};
    qToBigEndian(sizeBytes, size.data());
    return domain + path + QByteArray::fromHex("ffff ffff ffff 81a4") + QByteArray(kBytesFromInodeToTimes, '\1') +
           QByteArray(size.data(), size.size()) + QByteArray::fromHex("03 00");
}

/// What a look-up is defined as.
QString walk(const QStringList& paths, const QString& prefix, const QString& filename, bool includingExtension)
{
    for (const QString& path : paths) {
        QString name = path.mid(path.lastIndexOf(u'/') + 1);
        if (!includingExtension && name.contains(u'.')) {
            name.truncate(name.lastIndexOf(u'.'));
        }
        if (path.startsWith(prefix, Qt::CaseInsensitive) && name.compare(filename, Qt::CaseInsensitive) == 0) {
            return path;
        }
    }
    return {};
}

} // namespace

class TestFilePathList : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QStringList read(const QByteArray& manifest, const QString& prefix = {})
    {
        QFile file(m_folder.filePath(u"Manifest.mbdb"_s));
        const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(manifest) == manifest.size();
        file.close();
        return isWritten ? DRFilePathList::fileListFromMBDB(file.fileName(), prefix).filePaths() : QStringList{u"?"_s};
    }

private Q_SLOTS:
    void filesAreReadInOrder_data()
    {
        const QByteArray threeProperties = kExample.chopped(10) + QByteArray::fromHex("03") + string("a") +
                                           string("\xFF\0") + string("") + QByteArray::fromHex("ffff") + string("c") +
                                           string("d");
        QTest::addColumn<QByteArray>("records");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("worked example") << kExample << QStringList{kExampleText};
        QTest::newRow("three properties") << threeProperties + kExample << QStringList{kExampleText, kExampleText};
        QTest::newRow("absent path") << record(string("A"), QByteArray::fromHex("ffff")) + kExample
                                     << QStringList{u"A-"_s, kExampleText};
        QTest::newRow("empty domain") << record(string(""), string("a/b")) << QStringList{u"-a/b"_s};
        QTest::newRow("path is no UTF-8")
            << record(string("A"), string("x\xC3/y")) + kExample << QStringList{u"A-"_s, kExampleText};
        QTest::newRow("domain is no UTF-8") << record(string("\xFF"), string("x")) << QStringList{u"-x"_s};
        QTest::newRow("invalid only across the join") << record(string("A\xC3"), string("\xA9")) << QStringList{u"-"_s};
        QTest::newRow("U+FEFF stays") << record(string("A"), string("\xEF\xBB\xBFx")) << QStringList{u"A-\uFEFFx"_s};
        QTest::newRow("beyond ASCII") << record(string("D\u00E9"), string("\u00FC/\U0001F600"))
                                      << QStringList{u"D\u00E9-\u00FC/\U0001F600"_s};
        QTest::newRow("domains alternate")
            << record(string("A"), string("x")) + record(string("B"), string("x")) + record(string("A"), string("y"))
            << QStringList{u"A-x"_s, u"B-x"_s, u"A-y"_s};
        QTest::newRow("no records") << QByteArray() << QStringList();
    }

    void filesAreReadInOrder()
    {
        QFETCH(QByteArray, records);
        QTEST(read(kHeader + records), "files");
    }

    /// Of a manifest cut anywhere those files remain whose size is whole.
    void everyTruncationIsReadAsFarAsItGoes()
    {
        const QByteArray manifest = kHeader + kExample + kExample;
        const qsizetype firstSizeEnd = kHeader.size() + kExample.size() - kBytesBehindExampleSize;
        for (qsizetype length = 0; length <= manifest.size(); ++length) {
            const qsizetype expected = length < firstSizeEnd ? 0 : (length < firstSizeEnd + kExample.size() ? 1 : 2);
            QCOMPARE(read(manifest.first(length)).size(), expected);
        }
    }

    void sizesAreJudgedByTheirLowHalf_data()
    {
        QTest::addColumn<quint64>("sizeBytes");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("0, a folder") << quint64{0} << false;
        QTest::newRow("1") << quint64{1} << true;
        QTest::newRow("2 GiB - 1") << quint64{0x7FFFFFFF} << true;
        QTest::newRow("2 GiB") << quint64{0x80000000} << false;
        QTest::newRow("4 GiB - 1") << quint64{0xFFFFFFFF} << false;
        QTest::newRow("4 GiB") << quint64{0x100000000} << false;
        QTest::newRow("4 GiB + 1") << quint64{0x100000001} << true;
        QTest::newRow("largest") << ~quint64{0} << false;
    }

    void sizesAreJudgedByTheirLowHalf()
    {
        QFETCH(quint64, sizeBytes);
        QTEST(!read(kHeader + record(string("A"), string("x"), sizeBytes)).isEmpty(), "isListed");
    }

    void prefixIsCompared_data()
    {
        QTest::addColumn<QByteArray>("domain");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<bool>("isKept");
        const QString parts = u"MediaDomain-Library/SMS/Parts/"_s;
        QTest::newRow("other case") << QByteArray("mediadomain") << QByteArray("library/sms/parts/0a/x.jpg") << parts
                                    << true;
        QTest::newRow("other domain") << QByteArray("CameraRollDomain") << QByteArray("Library/SMS/Parts/x") << parts
                                      << false;
        QTest::newRow("other path") << QByteArray("MediaDomain") << QByteArray("Library/SMS/Part") << parts << false;
        QTest::newRow("not at the start")
            << QByteArray("xMediaDomain") << QByteArray("Library/SMS/Parts/x") << parts << false;
        QTest::newRow("within the domain") << QByteArray("MediaDomain") << QByteArray("x") << u"mediad"_s << true;
        QTest::newRow("the whole domain")
            << QByteArray("MediaDomain") << QByteArray("\xFF") << u"MediaDomain-"_s << true;
        QTest::newRow("domain is no UTF-8") << QByteArray("M\xFF") << QByteArray("x") << u"-X"_s << true;
        QTest::newRow("beyond ASCII") << QByteArray("A") << QByteArray("\u00C4x") << u"a-\u00E4"_s << true;
        QTest::newRow("grows in lower case") << QByteArray("A") << QByteArray("\u0130x") << u"A-\u0130X"_s << true;
        QTest::newRow("empty") << QByteArray("A") << QByteArray("x") << u""_s << true;
    }

    void prefixIsCompared()
    {
        QFETCH(QByteArray, domain);
        QFETCH(QByteArray, path);
        QFETCH(QString, prefix);
        QTEST(!read(kHeader + record(string(domain), string(path)), prefix).isEmpty(), "isKept");
    }

    void noManifestHasNoFiles()
    {
        QVERIFY(read("mbdx\5" + kExample).isEmpty());
        QVERIFY(DRFilePathList::fileListFromMBDB(m_folder.filePath(u"absent"_s)).filePaths().isEmpty());
        QVERIFY(DRFilePathList::fileListFromMBDB(m_folder.path()).filePaths().isEmpty());
    }

    void integersAreBigEndian_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<qsizetype>("available");
        QTest::addColumn<quint64>("value");
        QTest::addColumn<qint64>("offset");
        QTest::newRow("1") << 1 << qsizetype{9} << quint64{0x81} << qint64{1};
        QTest::newRow("2") << 2 << qsizetype{9} << quint64{0x8102} << qint64{2};
        QTest::newRow("4") << 4 << qsizetype{9} << quint64{0x81020304} << qint64{4};
        QTest::newRow("8") << 8 << qsizetype{9} << quint64{0x8102030405060708} << qint64{8};
        QTest::newRow("another size") << 3 << qsizetype{9} << quint64{0} << qint64{0};
        QTest::newRow("cut off") << 8 << qsizetype{7} << quint64{0} << qint64{7};
    }

    void integersAreBigEndian()
    {
        QFETCH(int, size);
        QFETCH(qsizetype, available);
        DRAbstractData reader(QByteArray::fromHex("81 02 03 04 05 06 07 08 09").first(available));
        QTEST(DRFilePathList::parseInt(reader, size), "value");
        QTEST(reader.offset(), "offset");
    }

    void filesAreFoundByName_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("includingExtension");
        QTest::addColumn<QString>("found");
        const QString parts = u"M-Parts"_s;
        QTest::newRow("stem") << parts << u"1234-1"_s << false << u"M-Parts/0a/1234-1.jpg"_s;
        QTest::newRow("stem when the extension counts") << parts << u"1234-1"_s << true << QString();
        QTest::newRow("whole name") << parts << u"1234-1.jpg"_s << true << u"M-Parts/0a/1234-1.jpg"_s;
        QTest::newRow("first in list order") << u"M-"_s << u"1234-1"_s << false << u"M-Other/1234-1.mov"_s;
        QTest::newRow("other case") << u"m-pARTS/0B"_s << u"A.TAR"_s << false << u"M-Parts/0b/a.tar.gz"_s;
        QTest::newRow("several dots") << parts << u"a"_s << false << QString();
        QTest::newRow("no folder") << u"M-"_s << u"M-top"_s << false << u"M-top.txt"_s;
        QTest::newRow("no extension") << QString() << u"plain"_s << false << u"M-x/plain"_s;
        QTest::newRow("dot in a folder") << QString() << u"name"_s << false << u"M-d.ir/name"_s;
        QTest::newRow("nothing but extension") << QString() << u""_s << false << u"M-x/.hidden"_s;
        QTest::newRow("a pair of surrogates") << QString() << u"\U00010428"_s << false << u"M-x/\U00010400.jpg"_s;
        QTest::newRow("dotted I is not i") << QString() << u"i"_s << false << QString();
    }

    void filesAreFoundByName()
    {
        QFETCH(QString, prefix);
        QFETCH(QString, name);
        QFETCH(bool, includingExtension);
        const DRFilePathList list({u"M-Other/1234-1.mov"_s, u"M-Parts/0a/1234-1.jpg"_s, u"M-Parts/0b/1234-1.jpg"_s,
                                   u"M-Parts/0b/a.tar.gz"_s, u"M-top.txt"_s, u"M-x/plain"_s, u"M-d.ir/name"_s,
                                   u"M-x/.hidden"_s, u"M-x/\U00010400.jpg"_s, u"M-x/\u0130.jpg"_s});
        QTEST(list.findInPath(prefix, name, includingExtension), "found");
        QVERIFY(DRFilePathList().findInPath(prefix, name, includingExtension).isNull());
    }

    void lookUpsAnswerWhatAWalkAnswers()
    {
        QRandomGenerator random(7);
        const QStringList letters{u"a"_s,      u"A"_s,      u"."_s,          u"/"_s,          u"-"_s,
                                  u"k"_s,      u"\u212A"_s, u"s"_s,          u"\u017F"_s,     u"\u0130"_s,
                                  u"\u00DF"_s, u"\u1E9E"_s, u"\U00010400"_s, u"\U00010428"_s, QChar(0xD801)};
        const auto text = [&](int most) {
            QString made;
            for (int i = random.bounded(most + 1); i > 0; --i) {
                made += letters.at(random.bounded(letters.size()));
            }
            return made;
        };
        int found = 0;
        for (int round = 0; round < 200; ++round) {
            QStringList paths;
            for (int i = random.bounded(60); i > 0; --i) {
                paths.append(text(3) + u'-' + text(5));
            }
            const DRFilePathList list(paths);
            for (int i = 0; i < 100; ++i) {
                const bool includingExtension = i % 2 == 0;
                const QString prefix = text(1);
                const QString name = text(3);
                const QString answer = list.findInPath(prefix, name, includingExtension);
                QCOMPARE(answer, walk(paths, prefix, name, includingExtension));
                found += answer.isNull() ? 0 : 1;
            }
        }
        QVERIFY(found > 1000);
    }
};

QTEST_GUILESS_MAIN(TestFilePathList)

#include "TestFilePathList.moc"
