#include "tests/platform/device/DRDeviceConformance.h"

#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/device/DRDCNotifications.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kContacts = u"com.vornmobile.android.contactsimport"_s;
const QString kPhonebook = u"com.vornmobile.android.socialphonebook"_s;
const QString kNotes = u"com.vornmobile.notes"_s;
const QString kUnknown = u"org.example.unknown"_s;
const QString kWorkFolder = u"work"_s;
const QString kNoSpace = u"not enough space on the phone"_s;

QString shortName(QString eventName)
{
    return eventName.remove(u"kDRDCNotification_DeviceTask"_s);
}

QStringList packetIDs(const std::vector<DRDCPacketProblem>& problems)
{
    return DRDCTaskResult{.failures = problems, .skipped = {}}.packetsWithErrors();
}

} // namespace

DRDeviceConformance::DRDeviceConformance(Factory factory) : m_factory(std::move(factory)) {}

void DRDeviceConformance::init()
{
    m_computer = std::make_unique<QTemporaryDir>();
    m_queue = std::make_unique<DRTestTaskQueue>();
    m_center = std::make_unique<DRNotificationCenter>();
    m_events.clear();
    m_lastProgress = -1;
    m_onEvent = nullptr;
    observeTasks();
}

void DRDeviceConformance::cleanup()
{
    m_registrations.clear();
    m_phone.reset();
}

void DRDeviceConformance::observeTasks()
{
    namespace Names = DRDCNotifications;
    for (const QString& name :
         {Names::kWillBeginBackup, Names::kDidFinishBackup, Names::kWillBeginBackupDataType,
          Names::kDidFinishBackupDataType, Names::kWillBeginBackupPacket, Names::kDidFinishBackupPacket,
          Names::kWillBeginRestore, Names::kDidFinishRestore, Names::kWillBeginRestoreDataType,
          Names::kDidFinishRestoreDataType, Names::kWillBeginRestorePacket, Names::kDidFinishRestorePacket}) {
        m_registrations.push_back(m_center->observe(name, [this](const DRNotification& event) {
            const QString value = event.userInfo.isEmpty() ? QString() : u' ' + event.userInfo.first().toString();
            m_events.append(shortName(event.name) + value);
            if (m_onEvent) {
                m_onEvent();
            }
        }));
    }
    m_registrations.push_back(m_center->observe(Names::kTaskDidUpdate, [this](const DRNotification& event) {
        m_lastProgress = std::any_cast<DRDCDeviceTaskPointer>(event.object)->progress();
    }));
}

void DRDeviceConformance::makePhone(const DRPhoneContent& content, quint64 capacityBytes)
{
    m_phone = m_factory(content, capacityBytes, *m_queue, *m_center);
    QVERIFY(m_phone && m_phone->device() && m_phone->device()->isConnected());
}

QString DRDeviceConformance::computerPath(const QString& relativePath) const
{
    return m_computer->filePath(relativePath);
}

void DRDeviceConformance::writeOnComputer(const QString& relativePath, const QByteArray& bytes) const
{
    QVERIFY(writeFile(computerPath(relativePath), bytes));
}

QByteArray DRDeviceConformance::readOnComputer(const QString& relativePath) const
{
    return readFile(computerPath(relativePath));
}

void DRDeviceConformance::writeRebuilt(const QMap<QString, QByteArray>& packets) const
{
    for (auto packet = packets.cbegin(); packet != packets.cend(); ++packet) {
        writeOnComputer(kWorkFolder + u'/' + packet.key() + u"/fullbackupdata"_s, packet.value());
    }
}

std::optional<DRDCTaskResult> DRDeviceConformance::runPackets(Work work, const QStringList& packetIDs)
{
    DRBRBackupInfo info;
    info.setTargetPath(computerPath(kWorkFolder));
    info.setBackupName(u"Backup <1>"_s);
    info.addPacketsToBackup(packetIDs);
    const QStringList order = DRBRBackupRestoreController(QString()).dataTypesDefaultSortOrder();
    std::vector<DRDCTaskResult> results;
    const auto handler = [this, &results](const DRDCTaskResult& result) {
        m_events.append(u"handler"_s);
        results.push_back(result);
    };
    const auto task = m_phone->device()->requestTask();
    const auto start =
        work == Work::Backup ? &DRDCDeviceTask::backupPacketsWithDevice : &DRDCDeviceTask::restorePacketsWithDevice;
    ((*task).*start)(m_phone->device(), info, order, handler);
    m_queue->runAll();
    return results.size() == 1 && m_lastProgress == 1.0 ? std::optional(results.front()) : std::nullopt;
}

void DRDeviceConformance::eventsArriveInOrder_data()
{
    const DRTestTable<bool, QString> row("isBackup", "expected");
    const auto named = [](const QString& events) { return events.arg(kPhonebook, kContacts, kNotes, kUnknown); };
    // The phone book is not offered, so it is not finished.
    row("backup", true,
        named(u"WillBeginBackup|WillBeginBackupDataType contacts|WillBeginBackupPacket %1|WillBeginBackupPacket %2|"
              "DidFinishBackupPacket %2|DidFinishBackupDataType contacts|WillBeginBackupDataType notes|"
              "WillBeginBackupPacket %3|DidFinishBackupPacket %3|DidFinishBackupDataType notes|"
              "WillBeginBackupPacket %4|DidFinishBackupPacket %4|DidFinishBackup|handler"_s));
    // The contacts are not rebuilt, so they are skipped.
    row("restore", false,
        named(u"WillBeginRestore|WillBeginRestoreDataType contacts|WillBeginRestorePacket %1|DidFinishRestorePacket %1|"
              "WillBeginRestorePacket %2|DidFinishRestoreDataType contacts|WillBeginRestoreDataType notes|"
              "WillBeginRestorePacket %3|DidFinishRestorePacket %3|DidFinishRestoreDataType notes|"
              "WillBeginRestorePacket %4|DidFinishRestorePacket %4|DidFinishRestore|handler"_s));
}

void DRDeviceConformance::eventsArriveInOrder()
{
    QFETCH(const bool, isBackup);
    makePhone({.packets = {{kContacts, "c"}, {kNotes, "n"}, {kUnknown, "u"}}, .storage = {}});
    if (!isBackup) {
        writeRebuilt({{kPhonebook, "p"}, {kNotes, "n2"}, {kUnknown, "u2"}});
    }
    const QStringList packets{kUnknown, kNotes, kPhonebook, kContacts, kNotes};
    QVERIFY(runPackets(isBackup ? Work::Backup : Work::Restore, packets));
    QTEST(m_events.join(u'|'), "expected");
}

void DRDeviceConformance::backupIsWholeAndLeavesThePhoneAlone()
{
    const QByteArray large(300'000, 'x');
    const DRPhoneContent content{.packets = {{kContacts, large}, {kNotes, ""}}, .storage = {{u"a.jpg"_s, "a"}}};
    makePhone(content);
    QCOMPARE(m_phone->device()->backupPackets(), QStringList({kContacts, kNotes}));

    const auto result = runPackets(Work::Backup, {kContacts, kNotes, u"../storage"_s});
    QVERIFY(result);
    QCOMPARE(result->packetsWithErrors(), QStringList(u"../storage"_s));
    QCOMPARE(readOnComputer(u"work/%1/fullbackupdata"_s.arg(kContacts)), large);
    QVERIFY(QFile::exists(computerPath(u"work/%1/fullbackupdata"_s.arg(kNotes))));
    QVERIFY(readOnComputer(u"work/BackupData.plist"_s).contains("<string>Backup &lt;1&gt;</string>"));
    QCOMPARE(m_phone->content(), content);
}

void DRDeviceConformance::backupNeverReplacesAnEarlierOne()
{
    makePhone({.packets = {{kNotes, "new"}}, .storage = {}});
    writeRebuilt({{kNotes, "earlier"}});
    const auto result = runPackets(Work::Backup, {kNotes});
    QVERIFY(result);
    QCOMPARE(result->packetsWithErrors(), QStringList(kNotes));
    QCOMPARE(readOnComputer(u"work/%1/fullbackupdata"_s.arg(kNotes)), "earlier");
    QCOMPARE(QDir(computerPath(u"work/"_s + kNotes)).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void DRDeviceConformance::backupWithoutAFolderFailsEveryPacket()
{
    makePhone({.packets = {{kContacts, "c"}, {kNotes, "n"}}, .storage = {}});
    writeOnComputer(kWorkFolder, "a file where the folder should be");
    const auto result = runPackets(Work::Backup, {kContacts, kNotes});
    QVERIFY(result);
    QCOMPARE(result->packetsWithErrors(), QStringList({kContacts, kNotes}));
}

void DRDeviceConformance::restoreReplacesWholeOrNotAtAll_data()
{
    using Packets = QMap<QString, QByteArray>;
    const DRTestTable<QStringList, Packets, quint64, Packets, QStringList, QStringList> row(
        "asked", "rebuilt", "acceptedBytes", "expected", "failed", "skipped");

    const Packets old{{kContacts, "old"}, {kNotes, "old"}};
    const QByteArray large(300'000, 'x');
    constexpr quint64 all = 1'000'000;
    row("whole", {kNotes}, {{kNotes, large}}, all, {{kContacts, "old"}, {kNotes, large}}, {}, {});
    row("smaller", {kNotes}, {{kNotes, "n"}}, all, {{kContacts, "old"}, {kNotes, "n"}}, {}, {});
    row("the app was not there", {kUnknown}, {{kUnknown, "u"}}, all,
        {{kContacts, "old"}, {kNotes, "old"}, {kUnknown, "u"}}, {}, {});
    row("not rebuilt", {kContacts, kNotes}, {{kNotes, "new"}}, all, {{kContacts, "old"}, {kNotes, "new"}}, {},
        {kContacts});
    row("write breaks off", {kNotes, kUnknown}, {{kNotes, large}, {kUnknown, large}}, 100'000, old, {kNotes, kUnknown},
        {});
    row("exactly the space there is", {kNotes}, {{kNotes, QByteArray(399'997, 'x')}}, all,
        {{kContacts, "old"}, {kNotes, QByteArray(399'997, 'x')}}, {}, {});
    row("one byte too many", {kNotes}, {{kNotes, QByteArray(399'998, 'x')}}, all, old, {kNotes}, {});
    row("no packet's name", {u"../storage"_s, u"."_s}, {{u"../storage"_s, "s"}}, all, old, {u"../storage"_s, u"."_s},
        {});
}

void DRDeviceConformance::restoreReplacesWholeOrNotAtAll()
{
    using Packets = QMap<QString, QByteArray>;
    QFETCH(const QStringList, asked);
    QFETCH(const Packets, rebuilt);
    QFETCH(const quint64, acceptedBytes);
    makePhone({.packets = {{kContacts, "old"}, {kNotes, "old"}}, .storage = {}}, 400'000);
    writeRebuilt(rebuilt);

    std::optional<DRDCTaskResult> result;
    {
        const auto limit = m_phone->failWritesAfter(acceptedBytes);
        result = runPackets(Work::Restore, asked);
    }
    QVERIFY(result);
    QTEST(result->packetsWithErrors(), "failed");
    QTEST(packetIDs(result->skipped), "skipped");
    QTEST(m_phone->content().packets, "expected");
    if (qstrcmp(QTest::currentDataTag(), "one byte too many") == 0) {
        QCOMPARE(result->failures.front().reason, kNoSpace);
    }
}

void DRDeviceConformance::phoneThatVanished_data()
{
    QTest::addColumn<bool>("isBackup");
    QTest::addColumn<qsizetype>("eventsBefore");
    QTest::addColumn<QStringList>("failed");
    for (const bool isBackup : {true, false}) {
        const char* const work = isBackup ? "backup" : "restore";
        QTest::addRow("%s, before", work) << isBackup << qsizetype{1} << QStringList{kContacts, kNotes};
        QTest::addRow("%s, in the middle", work) << isBackup << qsizetype{4} << QStringList{kNotes};
    }
}

void DRDeviceConformance::phoneThatVanished()
{
    QFETCH(const bool, isBackup);
    QFETCH(const qsizetype, eventsBefore);
    makePhone({.packets = {{kContacts, "c"}, {kNotes, "n"}}, .storage = {}});
    if (!isBackup) {
        writeRebuilt({{kContacts, "c"}, {kNotes, "n"}});
    }
    m_onEvent = [this, eventsBefore] {
        if (m_events.size() == eventsBefore) {
            m_phone->vanish();
        }
    };
    const auto result = runPackets(isBackup ? Work::Backup : Work::Restore, {kContacts, kNotes});
    QVERIFY(result);
    QTEST(result->packetsWithErrors(), "failed");
    QVERIFY(!result->failures.front().reason.isEmpty());
    QCOMPARE(m_events.last(), u"handler"_s);

    const DRDCDevicePointer device = m_phone->device();
    QVERIFY(!device->isConnected() && !device->hasStateFlag(DRDCDevice::kStateFlagReady));
    QVERIFY(device->backupPackets().isEmpty());
    QCOMPARE(device->preferredFilesystem().memoryUsableFreeBytes(), quint64{0});
}

void DRDeviceConformance::taskNeedsNobodyToHoldIt()
{
    makePhone({.packets = {{kNotes, "n"}}, .storage = {}});
    DRBRBackupInfo info;
    info.setTargetPath(computerPath(kWorkFolder));
    info.addPacketsToBackup({kNotes});
    DRDCDevicePointer device = m_phone->device();
    const std::weak_ptr<DRDCDevice> weakDevice = device;
    bool wasCalled = false;
    bool wasDeviceThere = false;
    device->requestTask()->backupPacketsWithDevice(device, info, {}, [&](const DRDCTaskResult&) {
        wasCalled = true;
        wasDeviceThere = !weakDevice.expired();
    });
    QVERIFY(!wasCalled); // nothing happens before the call returns
    device.reset();
    m_phone.reset();
    m_queue->runAll();
    QVERIFY(wasCalled);
    QVERIFY(wasDeviceThere);
    QVERIFY(weakDevice.expired());
}
