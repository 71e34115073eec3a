#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/device/DRDCFile.h"
#include "platform/device/DRDCFileUtils.h"
#include "platform/device/DRDCNotifications.h"
#include "platform/device/DRPacketOrder.h"
#include "tests/support/DRTestDevice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDevice : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void packetsOfDataType_data();
    void packetsOfDataType();
    void packetsAreOrdered_data();
    void packetsAreOrdered();
    void backupFolderIsNew();
    void sizeIsThatOfARegularFile();
    void nameTellsTheKind_data();
    void nameTellsTheKind();
};

void TestDevice::packetsOfDataType_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("supported");
    QTest::addColumn<QStringList>("packets");
    const QStringList browsers{u"com.android.chrome"_s, u"com.android.browser"_s};
    QTest::newRow("in the table's order")
        << u"bookmarks"_s << browsers << QStringList{u"com.android.browser"_s, u"com.android.chrome"_s};
    QTest::newRow("only those offered") << u"bookmarks"_s << QStringList{u"com.android.chrome"_s}
                                        << QStringList{u"com.android.chrome"_s};
    QTest::newRow("none offered") << u"notes"_s << browsers << QStringList{};
    QTest::newRow("media") << u"images"_s << browsers << QStringList{};
}

void TestDevice::packetsOfDataType()
{
    QFETCH(const QString, key);
    QFETCH(const QStringList, supported);
    QTEST(DRBRBackupRestoreController(QString()).packetIDsForDataType(key, supported, u"1"_s), "packets");
}

void TestDevice::packetsAreOrdered_data()
{
    QTest::addColumn<QString>("packets");
    QTest::addColumn<QString>("sortOrder");
    QTest::addColumn<QString>("ordered"); ///< "[" and "]" mark the first and last of a data type
    const QString packets =
        u"x.unknown com.vornmobile.notes com.android.chrome com.android.browser com.android.chrome y.unknown"_s;
    QTest::newRow("by the given order")
        << packets << u"bookmarks notes"_s
        << u"[com.android.chrome com.android.browser] [com.vornmobile.notes] [x.unknown y.unknown]"_s;
    QTest::newRow("others after them, together")
        << packets << u"notes"_s
        << u"[com.vornmobile.notes] [com.android.chrome com.android.browser] [x.unknown y.unknown]"_s;
    QTest::newRow("without an order") << u"com.android.chrome com.vornmobile.notes com.android.browser"_s << QString()
                                      << u"[com.android.chrome com.android.browser] [com.vornmobile.notes]"_s;
}

void TestDevice::packetsAreOrdered()
{
    QFETCH(const QString, packets);
    QFETCH(const QString, sortOrder);
    QStringList lines;
    for (const DRPacketPosition& position : packetsInOrder(packets.split(u' '), sortOrder.split(u' '))) {
        lines.append((position.isFirstOfDataType ? u"["_s : QString()) + position.packetID +
                     (position.isLastOfDataType ? u"]"_s : QString()));
    }
    QTEST(lines.join(u' '), "ordered");
}

void TestDevice::backupFolderIsNew()
{
    const QTemporaryDir folder;
    DRNotificationCenter center;
    const DRTestDevice device(center);
    const DRBRBackupRestoreController controller(folder.path());
    const QDateTime date(QDate(2014, 5, 6), QTime(7, 8, 9), Qt::LocalTime);
    const QString first = folder.filePath(device.identifier() + u"/2014-05-06 07-08-09"_s);
    QCOMPARE(controller.pathToBackupFolderWithDevice(device, date.toUTC()), first);
    QVERIFY(QDir().mkpath(first) && QFile::link(u"nowhere"_s, first + u" (2)"_s));
    QCOMPARE(controller.pathToBackupFolderWithDevice(device, date.toUTC()), first + u" (3)"_s);
}

void TestDevice::sizeIsThatOfARegularFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("12345") == 5);
    file.close();
    QVERIFY(QFile::link(file.fileName(), folder.filePath(u"link"_s)));
    QCOMPARE(DRDCFile::fileWithSourcePath(file.fileName())->filesize(), quint64{5});
    QCOMPARE(DRDCFile::fileWithSourcePath(folder.filePath(u"link"_s))->filesize(), quint64{0});
    QCOMPARE(DRDCFile::fileWithSourcePath(folder.filePath(u"missing"_s))->filesize(), quint64{0});
}

void TestDevice::nameTellsTheKind_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<quint32>("kind");
    const auto addRow = [](const char* name, quint32 kind) { QTest::newRow(name) << QString::fromUtf8(name) << kind; };
    addRow("IMG_0001.JPG", 0x10);
    addRow("a.b.Heic", 0x10);
    addRow("IMG_0002.MOV", 0x08);
    addRow("clip.3g2", 0x08);
    addRow("clip.mkv", 0x20);
    addRow("memo.m4a", 0x04);
    addRow("list.m3u8", 0x40);
    addRow("jpg", 0);
    addRow(".jpg", 0);
    addRow("dot at the end.", 0);
    addRow("blank in between.jpg jpeg", 0);
    addRow("long.jpgx", 0);
    addRow("short.jp", 0);
    addRow("sidecar.aae", 0);
    addRow("", 0);
}

void TestDevice::nameTellsTheKind()
{
    QFETCH(const QString, name);
    QTEST(DRDCFileUtils::fileKindFromFileExtension(DRDCFileUtils::extensionOfName(name)), "kind");
}

QTEST_GUILESS_MAIN(TestDevice)
#include "TestDevice.moc"
