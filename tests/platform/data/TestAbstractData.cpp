#include "platform/data/DRAbstractData.h"

#include <QtTest>

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
        QTest::addColumn<qint64>("count");
        QTest::newRow("one too many") << qint64{4};
        QTest::newRow("the most") << std::numeric_limits<qint64>::max();
        QTest::newRow("negative") << qint64{-1};
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
