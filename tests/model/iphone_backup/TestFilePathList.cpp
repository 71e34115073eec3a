#include "model/iphone_backup/DRFilePathList.h"
#include "platform/data/DRAbstractData.h"
#include "tests/support/DRTestTable.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

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
        const DRTestTable<QByteArray, QStringList> row("records", "files");
        row("worked example", kExample, {kExampleText});
        row("three properties", threeProperties + kExample, {kExampleText, kExampleText});
        row("absent path", record(string("A"), QByteArray::fromHex("ffff")) + kExample, {u"A-"_s, kExampleText});
        row("empty domain", record(string(""), string("a/b")), {u"-a/b"_s});
        row("path is no UTF-8", record(string("A"), string("x\xC3/y")) + kExample, {u"A-"_s, kExampleText});
        row("domain is no UTF-8", record(string("\xFF"), string("x")), {u"-x"_s});
        row("invalid only across the join", record(string("A\xC3"), string("\xA9")), {u"-"_s});
        row("U+FEFF stays", record(string("A"), string("\xEF\xBB\xBFx")), {u"A-\uFEFFx"_s});
        row("beyond ASCII", record(string("D\u00E9"), string("\u00FC/\U0001F600")), {u"D\u00E9-\u00FC/\U0001F600"_s});
        row("domains alternate",
            record(string("A"), string("x")) + record(string("B"), string("x")) + record(string("A"), string("y")),
            {u"A-x"_s, u"B-x"_s, u"A-y"_s});
        row("no records", {}, {});
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
        const DRTestTable<quint64, bool> row("sizeBytes", "isListed");
        row("0, a folder", 0, false);
        row("1", 1, true);
        row("2 GiB - 1", 0x7FFFFFFF, true);
        row("2 GiB", 0x80000000, false);
        row("4 GiB - 1", 0xFFFFFFFF, false);
        row("4 GiB", 0x100000000, false);
        row("4 GiB + 1", 0x100000001, true);
        row("largest", ~quint64{0}, false);
    }

    void sizesAreJudgedByTheirLowHalf()
    {
        QFETCH(quint64, sizeBytes);
        QTEST(!read(kHeader + record(string("A"), string("x"), sizeBytes)).isEmpty(), "isListed");
    }

    void prefixIsCompared_data()
    {
        const DRTestTable<QByteArray, QByteArray, QString, bool> row("domain", "path", "prefix", "isKept");
        const QString parts = u"MediaDomain-Library/SMS/Parts/"_s;
        row("other case", "mediadomain", "library/sms/parts/0a/x.jpg", parts, true);
        row("other domain", "CameraRollDomain", "Library/SMS/Parts/x", parts, false);
        row("other path", "MediaDomain", "Library/SMS/Part", parts, false);
        row("not at the start", "xMediaDomain", "Library/SMS/Parts/x", parts, false);
        row("within the domain", "MediaDomain", "x", u"mediad"_s, true);
        row("the whole domain", "MediaDomain", "\xFF", u"MediaDomain-"_s, true);
        row("domain is no UTF-8", "M\xFF", "x", u"-X"_s, true);
        row("beyond ASCII", "A", "\u00C4x", u"a-\u00E4"_s, true);
        row("grows in lower case", "A", "\u0130x", u"A-\u0130X"_s, true);
        row("empty", "A", "x", u""_s, true);
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
        const DRTestTable<int, qsizetype, quint64, qint64> row("size", "available", "value", "offset");
        row("1", 1, 9, 0x81, 1);
        row("2", 2, 9, 0x8102, 2);
        row("4", 4, 9, 0x81020304, 4);
        row("8", 8, 9, 0x8102030405060708, 8);
        row("another size", 3, 9, 0, 0);
        row("cut off", 8, 7, 0, 7);
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
        const DRTestTable<QString, QString, bool, QString> row("prefix", "name", "includingExtension", "found");
        const QString parts = u"M-Parts"_s;
        row("stem", parts, u"1234-1"_s, false, u"M-Parts/0a/1234-1.jpg"_s);
        row("stem when the extension counts", parts, u"1234-1"_s, true, {});
        row("whole name", parts, u"1234-1.jpg"_s, true, u"M-Parts/0a/1234-1.jpg"_s);
        row("first in list order", u"M-"_s, u"1234-1"_s, false, u"M-Other/1234-1.mov"_s);
        row("other case", u"m-pARTS/0B"_s, u"A.TAR"_s, false, u"M-Parts/0b/a.tar.gz"_s);
        row("several dots", parts, u"a"_s, false, {});
        row("no folder", u"M-"_s, u"M-top"_s, false, u"M-top.txt"_s);
        row("no extension", {}, u"plain"_s, false, u"M-x/plain"_s);
        row("dot in a folder", {}, u"name"_s, false, u"M-d.ir/name"_s);
        row("nothing but extension", {}, u""_s, false, u"M-x/.hidden"_s);
        row("a pair of surrogates", {}, u"\U00010428"_s, false, u"M-x/\U00010400.jpg"_s);
        row("dotted I is not i", {}, u"i"_s, false, {});
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
