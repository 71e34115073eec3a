#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/device/DRDCFile.h"
#include "platform/device/DRDCFileUtils.h"
#include "platform/device/DRDCNotifications.h"
#include "platform/device/DRPacketOrder.h"
#include "tests/support/DRTestDevice.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestDevice : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void packetsOfDataType_data()
    {
        const DRTestTable<QString, QStringList, QStringList> row("key", "supported", "packets");
        const QStringList browsers{u"com.android.chrome"_s, u"com.android.browser"_s};
        row("in the table's order", u"bookmarks"_s, browsers, {u"com.android.browser"_s, u"com.android.chrome"_s});
        row("only those offered", u"bookmarks"_s, {u"com.android.chrome"_s}, {u"com.android.chrome"_s});
        row("none offered", u"notes"_s, browsers, {});
        row("media", u"images"_s, browsers, {});
    }

    void packetsOfDataType()
    {
        QFETCH(const QString, key);
        QFETCH(const QStringList, supported);
        QTEST(DRBRBackupRestoreController(QString()).packetIDsForDataType(key, supported, u"1"_s), "packets");
    }

    void packetsAreOrdered_data()
    {
        // ordered: "[" and "]" mark the first and last of a data type
        const DRTestTable<QString, QString, QString> row("packets", "sortOrder", "ordered");
        const QString packets =
            u"x.unknown com.vornmobile.notes com.android.chrome com.android.browser com.android.chrome y.unknown"_s;
        row("by the given order", packets, u"bookmarks notes"_s,
            u"[com.android.chrome com.android.browser] [com.vornmobile.notes] [x.unknown y.unknown]"_s);
        row("others after them, together", packets, u"notes"_s,
            u"[com.vornmobile.notes] [com.android.chrome com.android.browser] [x.unknown y.unknown]"_s);
        row("without an order", u"com.android.chrome com.vornmobile.notes com.android.browser"_s, {},
            u"[com.android.chrome com.android.browser] [com.vornmobile.notes]"_s);
    }

    void packetsAreOrdered()
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

    void backupFolderIsNew()
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

    void sizeIsThatOfARegularFile()
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

    void nameTellsTheKind_data()
    {
        const DRTestTable<QString, quint32> row("name", "kind");
        const auto addRow = [&row](const char* name, quint32 kind) { row(name, QString::fromUtf8(name), kind); };
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

    void nameTellsTheKind()
    {
        QFETCH(const QString, name);
        QTEST(DRDCFileUtils::fileKindFromFileExtension(DRDCFileUtils::extensionOfName(name)), "kind");
    }
};

QTEST_GUILESS_MAIN(TestDevice)
#include "TestDevice.moc"
