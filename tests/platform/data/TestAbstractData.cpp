#include "platform/data/DRAbstractData.h"
#include "platform/data/DRMutableAbstractData.h"
#include "tests/support/DRTestTable.h"

#include <limits>

using namespace Qt::StringLiterals;
using Order = DRAbstractData::ByteOrder;

class TestAbstractData : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbersAndTextsFollowEachOther()
    {
        DRAbstractData data(QByteArray("\x01\x02\x03\x02\x03\xFF\xFE\xFD\xFC\x01\x02\x03\x04\x05\x06\x07\x08"
                                       "a\0\xC3\xA9",
                                       21));
        QCOMPARE(data.readUInt8(), quint8{1});
        QCOMPARE(data.readUInt16(Order::BigEndian), quint16{0x0203});
        QCOMPARE(data.readUInt16(Order::LittleEndian), quint16{0x0302});
        QCOMPARE(data.readUInt32(Order::BigEndian), quint32{0xFFFEFDFC});
        QCOMPARE(data.readUInt64(Order::BigEndian), quint64{0x0102030405060708});
        QCOMPARE(data.readString(4), u"a"_s + QChar(u'\0') + u"\u00E9"_s);
        QVERIFY(data.isAtEnd());
        QCOMPARE(data.readString(0), u""_s);
    }

    void undecodableTextIsPassedOver()
    {
        DRAbstractData data("\xFF\xFE!");
        QVERIFY(!data.readString(2));
        QCOMPARE(data.readBytes(1), QByteArray("!"));
    }

    void readPastTheEndMovesToTheEnd_data()
    {
        const DRTestTable<qint64> row("count");
        row("one too many", 4);
        row("the most", std::numeric_limits<qint64>::max());
        row("negative", -1);
    }

    void readPastTheEndMovesToTheEnd()
    {
        QFETCH(qint64, count);
        DRAbstractData data("abc");
        QVERIFY(!data.readView(count));
        QVERIFY(data.isAtEnd());
        data.setOffset(1);
        QVERIFY(!data.readUInt32(Order::BigEndian) && data.isAtEnd() && !data.readUInt8() && !data.skip(1));
    }

    void rangesAreRemovedAtOnce_data()
    {
        // offset: the position is before the "d" at first
        const DRTestTable<std::vector<DRByteRange>, bool, QByteArray, qint64> row("ranges", "isDone", "left", "offset");
        using Ranges = std::vector<DRByteRange>;
        row("none", Ranges{}, true, "abcdef", 3);
        row("both ends", Ranges{{0, 2}, {5, 6}}, true, "cde", 1);
        row("neighbours", Ranges{{1, 2}, {2, 5}}, true, "af", 1);
        row("all", Ranges{{0, 6}}, true, {}, 0);
        row("overlapping", Ranges{{0, 3}, {2, 4}}, false, "abcdef", 3);
        row("unsorted", Ranges{{3, 4}, {0, 1}}, false, "abcdef", 3);
        row("backwards", Ranges{{4, 2}}, false, "abcdef", 3);
        row("beyond", Ranges{{5, 7}}, false, "abcdef", 3);
    }

    void rangesAreRemovedAtOnce()
    {
        QFETCH(std::vector<DRByteRange>, ranges);
        QFETCH(qint64, offset);
        const QByteArray shared("abcdef");
        DRMutableAbstractData data(shared);
        data.setOffset(3);
        QTEST(data.removeRanges(ranges), "isDone");
        QTEST(data.bytes(), "left");
        QCOMPARE(data.offset(), offset);
        QCOMPARE(shared, QByteArray("abcdef"));
    }

    void bytesAreOverwrittenInside()
    {
        DRMutableAbstractData data(QByteArray("abcd"));
        QVERIFY(data.overwrite(2, "xy") && data.overwrite(4, ""));
        QVERIFY(!data.overwrite(3, "zz") && !data.overwrite(~quint64{0}, "zz"));
        QCOMPARE(data.bytes(), QByteArray("abxy"));
    }

    void offsetStaysInside()
    {
        DRAbstractData data("abc");
        data.setOffset(100);
        QCOMPARE(data.offset(), 3);
        data.setOffset(-1);
        QCOMPARE(data.offset(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAbstractData)

#include "TestAbstractData.moc"
