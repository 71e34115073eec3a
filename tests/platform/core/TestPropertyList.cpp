#include "platform/core/DRPropertyList.h"

#include "platform/core/DRFiles.h"
#include "tests/support/DRTestTable.h"

#include <QDateTime>
#include <QTemporaryDir>
#include <QtEndian>

#include <limits>
#include <sys/stat.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

QByteArray xml(const QByteArray& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
           content + "</plist>";
}

QByteArray nestedXml(int depth)
{
    return xml("<dict><key>a</key>" + QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth) +
               "</dict>");
}

/// A binary property list of these objects with one-byte references and two-byte offsets; the first object is the root.
QByteArray binary(const std::vector<QByteArray>& objects)
{
    QByteArray bytes = "bplist00";
    QByteArray table;
    for (const QByteArray& object : objects) {
        const auto offset = qToBigEndian(static_cast<quint16>(bytes.size()));
        table.append(QByteArray::fromRawData(reinterpret_cast<const char*>(&offset), 2));
        bytes += object;
    }
    const auto tableOffset = qToBigEndian(static_cast<quint64>(bytes.size()));
    bytes += table + QByteArray(6, '\0') + "\x02\x01" + QByteArray(7, '\0') + static_cast<char>(objects.size());
    bytes += QByteArray(8, '\0');
    return bytes + QByteArray(reinterpret_cast<const char*>(&tableOffset), 8);
}

/// Containers in a row, each holding the next one `copies` times, the last one empty, in a dictionary under "k".
QByteArray chain(int length, int copies)
{
    std::vector<QByteArray> objects{QByteArray("\xD1\x01\x02"), QByteArray("Qk")};
    for (int i = 0; i < length; ++i) {
        const auto next = static_cast<char>(objects.size() + 1);
        objects.push_back(QByteArray(1, static_cast<char>(0xA0 + copies)) + QByteArray(copies, next));
    }
    objects.emplace_back("\xA0");
    return binary(objects);
}

QVariantMap everyType()
{
    return {{u"array"_s, QVariantList{u"a"_s, qint64{1}, QVariantMap{{u"deep"_s, true}}}},
            {u"data"_s, QByteArray("\x00\xFF\x01", 3)},
            {u"date"_s, QDateTime(QDate(2014, 3, 9), QTime(18, 30), Qt::UTC)},
            {u"dateBefore"_s, QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), Qt::UTC)},
            {u"emptyData"_s, QByteArray("")},
            {u"false"_s, false},
            {u"huge"_s, std::numeric_limits<quint64>::max()},
            {u"key <&> \U0001F600"_s, u"\uFEFF<text> & \U0001F600 \u00E9"_s},
            {u"negative"_s, qint64{-7}},
            {u"real"_s, 2.5},
            {u"smallest"_s, std::numeric_limits<qint64>::min()}};
}

} // namespace

class TestPropertyList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyTypeSurvivesBothForms()
    {
        QCOMPARE(DRPropertyList::dictionaryFromData(DRPropertyList::xmlFromDictionary(everyType())), everyType());
        QCOMPARE(DRPropertyList::dictionaryFromData(DRPropertyList::binaryFromDictionary(everyType())), everyType());
    }

    void unwritableTextAndTypesDoNotSpoilTheFile()
    {
        const QVariantMap dictionary{{u"a"_s, u"x\u0001"_s + QChar(0xD800)}, {u"b"_s, QVariant::fromValue(QPointF())}};
        const QVariantMap expected{{u"a"_s, u"x\uFFFD\uFFFD"_s}};
        QCOMPARE(DRPropertyList::dictionaryFromData(DRPropertyList::xmlFromDictionary(dictionary)), expected);
    }

    void bytesAreReadOrRefused_data()
    {
        const DRTestTable<QByteArray, bool> row("bytes", "isRead");
        row("no bytes", {}, false);
        row("not a property list", "SQLite format 3", false);
        row("array at the top", xml("<array/>"), false);
        row("markup inside a text", xml("<dict><key>k</key><string><![CDATA[<array><dict>]]></string></dict>"), true);
        row("invalid UTF-8", xml("<dict><key>k</key><string>\xFF</string></dict>"), true);
        row("nested to the limit", nestedXml(63), true);
        row("nested deeper", nestedXml(64), false);
        row("nested very deep", nestedXml(1'000'000), false);
        row("nesting that hides its ends",
            xml("<dict><key>k</key>" + QByteArray("<array><!--</array>-->").repeated(100'000)), false);
        row("attribute with a bracket", xml("<dict a='</dict>'></dict>"), false);
        row("late instruction", xml("<?a '?>' ?><dict/>"), false);
        row("entity", "<!DOCTYPE plist [<!ENTITY a 'b'>]><plist><dict/></plist>", false);
        row("binary chain", chain(60, 1), true);
        row("binary chain too deep", chain(64, 1), false);
        row("binary that multiplies", chain(40, 2), false);
        row("binary cycle", binary({QByteArray("\xD1\x01\x00", 3), QByteArray("Qk")}), false);
        row("key with NUL", binary({QByteArray("\xD1\x01\x01"), QByteArray("Rk\0", 3)}), false);
        row("key with NUL in XML", xml(QByteArray("<dict><key>k\0</key><true/></dict>", 33)), false);
        row("key with escaped NUL", xml("<dict><key>k&#0;&#x0;</key><true/></dict>"), false);
        row("key that is no text", binary({QByteArray("\xD1\x01\x01"), QByteArray("\x09")}), false);
        row("reference to nowhere", binary({QByteArray("\xD1\x01\x07"), QByteArray("Qk")}), false);
        row("count beyond the end", binary({QByteArray("\xDF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), QByteArray("Qk")}),
            false);
        row("no trailer", "bplist00", false);
    }

    void bytesAreReadOrRefused()
    {
        QFETCH(QByteArray, bytes);
        QTEST(DRPropertyList::dictionaryFromData(bytes).has_value(), "isRead");
    }

    void sharedLargeTextIsNotCopiedWithoutEnd()
    {
        const QByteArray text = "\x5F\x12" + QByteArray("\x00\x00\xF0\x00", 4) + QByteArray(0xF000, 'x');
        QByteArray list("\xAF\x11\xF0\x00", 4);
        list += QByteArray(0xF000, '\x02');
        QVERIFY(
            !DRPropertyList::dictionaryFromData(binary({QByteArray("\xD1\x01\x03"), QByteArray("Qk"), text, list})));
    }

    void everyCutAndEveryFlippedByteIsSurvived_data()
    {
        const DRTestTable<QByteArray> row("whole");
        row("binary", DRPropertyList::binaryFromDictionary(everyType()));
        const QByteArray xmlForm = DRPropertyList::xmlFromDictionary(everyType());
        row("XML", xmlForm.left(xmlForm.lastIndexOf("</dict>") + 7));
    }

    void everyCutAndEveryFlippedByteIsSurvived()
    {
        QFETCH(QByteArray, whole);
        QCOMPARE(DRPropertyList::dictionaryFromData(whole), everyType());
        for (qsizetype i = 0; i < whole.size(); ++i) {
            QVERIFY(DRPropertyList::dictionaryFromData(whole.left(i)) != everyType());
            for (const char wrong : {'\0', '\x7F', '\xFF', '<'}) {
                QByteArray broken = whole;
                broken[i] = wrong;
                const auto answer = DRPropertyList::dictionaryFromData(broken);
                QVERIFY(!answer || answer->size() <= everyType().size());
            }
        }
    }

    void onlyRegularFilesAreRead()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"Info.plist"_s);
        QVERIFY(DRFiles::writeAtomically(file, DRPropertyList::binaryFromDictionary(everyType())));
        QVERIFY(QFile::link(file, folder.filePath(u"link"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
        QCOMPARE(DRPropertyList::readDictionary(file), everyType());
        for (const QString& name : {u"link"_s, u"pipe"_s, u"missing"_s, u"."_s}) {
            QVERIFY2(!DRPropertyList::readDictionary(folder.filePath(name)), qPrintable(name));
        }
    }
};

QTEST_GUILESS_MAIN(TestPropertyList)

#include "TestPropertyList.moc"
