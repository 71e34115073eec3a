#include "model/packet/DRTarHeader.h"
#include "model/phone_backup/DRPhoneRestore.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRTestDevice.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestServices.h"
#include "tests/support/DRTestTable.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

using Ending = DRPhoneRestoreResult::Ending;
using Phase = DRPhoneRestore::Phase;

const QString kNotes = u"com.vornmobile.notes"_s;
const QString kCalendar = u"com.android.providers.calendar"_s; // goes first

void write(const QString& path, const QByteArray& bytes)
{
    if (!writeFile(path, bytes)) {
        qFatal("a file of the test cannot be written");
    }
}

/// A packet of one file with this content and time.
QByteArray packet(const QByteArray& content, qint64 seconds = 1)
{
    const auto size = static_cast<quint64>(content.size());
    return "ANDROID BACKUP\n1\n0\nnone\n" + tarHeader("apps/x/f/data", size, seconds) + content +
           QByteArray(static_cast<qsizetype>(tarPadding(size) + kTarEndBytes), '\0');
}

/// Keeps what it is told.
class Observer final : public DRPhoneRestore::Observer {
public:
    void phaseChanged(Phase phase) override { phases.push_back(phase); }
    void progressed(double) override {}
    void ended(const DRPhoneRestoreResult& result) override { results.push_back(result); }

    std::vector<Phase> phases;
    std::vector<DRPhoneRestoreResult> results;
};

/// A phone whose apps hold "new" things, and a backup of it with the "old" ones.
struct Fixture {
    DRTestServices world;
    std::shared_ptr<DRTestDevice> phone = std::make_shared<DRTestDevice>(world.notifications);
    Observer observer;
    std::shared_ptr<DRPhoneRestore> restore;

    [[nodiscard]] QString backupFolder() const { return world.root.filePath(u"backup"_s); }
    [[nodiscard]] QString checkFolder() const { return world.root.filePath(u"check"_s); }

    [[nodiscard]] bool start()
    {
        phone->packets = QStringList{kCalendar, kNotes};
        write(backupFolder() + u"/BackupData.plist"_s,
              DRPropertyList::xmlFromDictionary({{u"DeviceIdentifier"_s, phone->identifier()},
                                                 {u"BackupDate"_s, QDateTime::fromSecsSinceEpoch(1)},
                                                 {u"Packets"_s, QVariantList{kNotes, kCalendar}}}));
        for (const QString& packetID : phone->packets) {
            write(DRPhoneBackup::pathOfPacket(backupFolder(), packetID), packet("old"));
        }
        auto plan = DRPhoneRestorePlan::make(DRPhoneBackup::ofFolder(backupFolder()), *phone,
                                             [](const QString&) { return true; });
        plan.check();
        if (plan.obstacle() != DRPhoneRestorePlan::Obstacle::None) {
            return false;
        }
        restore = DRPhoneRestore::start({.phone = phone,
                                         .plan = plan,
                                         .keptName = u"Kept"_s,
                                         .keptDate = world.clock.now(),
                                         .applicationVersion = u"1"_s,
                                         .checkFolder = checkFolder()},
                                        world.services, observer);
        return true;
    }

    /// The phone gives the packets that its last task asks for.
    void give(const QByteArray& bytes, const DRDCTaskResult& result = {})
    {
        const auto task = phone->tasks.back();
        for (const QString& packetID : task->backupInfo().packetIDs()) {
            write(DRPhoneBackup::pathOfPacket(task->backupInfo().targetPath(), packetID), bytes);
        }
        task->finishPackets(result);
        world.queue.runAll();
    }

    /// The phone takes the packets, or not.
    void take(const DRDCTaskResult& result = {}) { phone->tasks.back()->finishPackets(result); }
};

} // namespace

/// The engine of the undo, with a phone that does what a test says.
class TestPhoneRestore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void appsGoBackAndAreVerified()
    {
        Fixture f;
        QVERIFY(f.start());
        QCOMPARE(f.phone->tasks.at(0)->work(), DRTestDeviceTask::Work::Backup);
        f.phone->freeBytes = 10000;
        f.give(packet("new"));
        QCOMPARE(f.phone->tasks.at(1)->work(), DRTestDeviceTask::Work::Restore);
        QCOMPARE(f.phone->tasks.at(1)->backupInfo().targetPath(), f.backupFolder());
        QCOMPARE(f.phone->tasks.at(1)->backupInfo().packetIDs(), (QStringList{kCalendar, kNotes}));
        f.take();
        QCOMPARE(f.phone->tasks.at(2)->backupInfo().targetPath(), f.checkFolder());
        f.give(packet("old", 7)); // the phone packs the same content anew
        QCOMPARE(f.observer.results.size(), std::size_t{1});
        QCOMPARE(f.observer.results[0].ending, Ending::PutBack);
        QCOMPARE(f.observer.results[0].putBack, (QStringList{kCalendar, kNotes}));
        QVERIFY(QFile::exists(DRPhoneBackup::pathOfPacket(f.observer.results[0].keptPath, kNotes)));
        QCOMPARE(f.observer.phases, (std::vector{Phase::BackUp, Phase::Restore, Phase::Verify}));
    }

    void nothingIsWrittenUnlessTheStateIsKept_data()
    {
        const DRTestTable<bool, bool, Ending> row("isConnected", "isGiven", "ending");
        row("the phone is gone", false, false, Ending::PhoneGone);
        row("one app cannot be backed up", true, false, Ending::NotKept);
        row("it would not fit", true, true, Ending::NotEnoughSpace);
    }

    void nothingIsWrittenUnlessTheStateIsKept()
    {
        QFETCH(const bool, isConnected);
        QFETCH(const bool, isGiven);
        Fixture f;
        QVERIFY(f.start());
        f.phone->connected = isConnected;
        f.give("", isGiven ? DRDCTaskResult() : DRDCTaskResult{.failures = {{kNotes, u"no"_s}}, .skipped = {}});
        QCOMPARE(f.phone->tasks.size(), std::size_t{1});
        QTEST(f.observer.results.at(0).ending, "ending");
    }

    void failureNamesWhatIsBack_data()
    {
        // refused: packets that the phone does not take
        // silent: packets that it does not give again
        // heldAfter: content of what it gives
        const DRTestTable<QStringList, QStringList, QByteArray, QStringList> row("refused", "silent", "heldAfter",
                                                                                 "putBack");
        const QStringList both{kCalendar, kNotes};
        row("one is refused", {kCalendar}, {}, packet("old"), {kNotes});
        row("all are refused", both, {}, {}, {});
        row("the phone goes in the middle", {kNotes}, both, {}, {});
        row("one cannot be verified", {}, {kNotes}, packet("old"), {kCalendar});
        row("the phone holds something else", {}, {}, packet("odd"), {});
        row("what it holds is cut", {}, {}, packet("old").left(540), {});
    }

    void failureNamesWhatIsBack()
    {
        QFETCH(const QStringList, refused);
        QFETCH(const QStringList, silent);
        QFETCH(const QByteArray, heldAfter);
        const auto failing = [](const QStringList& packetIDs) {
            DRDCTaskResult result;
            for (const QString& packetID : packetIDs) {
                result.failures.push_back({packetID, u"no"_s});
            }
            return result;
        };
        Fixture f;
        QVERIFY(f.start());
        f.give(packet("new"));
        f.take(failing(refused));
        if (refused.size() < 2) {
            f.give(heldAfter, failing(silent));
        }
        const DRPhoneRestoreResult& result = f.observer.results.at(0);
        QCOMPARE(result.ending, Ending::Failed);
        QTEST(result.putBack, "putBack");
        QCOMPARE(result.putBack.size() + static_cast<qsizetype>(result.failures.size()), 2);
    }

    void greatestGrowthMustFit()
    {
        // The calendar grows before the notes shrink by as much.
        for (const quint64 free : {quint64{999}, quint64{1000}}) {
            Fixture f;
            QVERIFY(f.start());
            const qsizetype size = packet("old").size();
            const QString kept = f.phone->tasks[0]->backupInfo().targetPath();
            write(DRPhoneBackup::pathOfPacket(kept, kCalendar), QByteArray(size - 1000, 'x'));
            write(DRPhoneBackup::pathOfPacket(kept, kNotes), QByteArray(size + 1000, 'x'));
            f.phone->freeBytes = free;
            f.take();
            QCOMPARE(f.phone->tasks.size(), free == 1000 ? std::size_t{2} : std::size_t{1});
            if (free == 1000) {
                f.take({.failures = {{kCalendar, u"no"_s}, {kNotes, u"no"_s}}, .skipped = {}}); // a task must end
            }
        }
    }

    void cancelledBeforeItWrites()
    {
        Fixture f;
        QVERIFY(f.start());
        f.restore->cancel();
        f.give(packet("new"));
        QVERIFY(f.observer.results.empty());
        QCOMPARE(f.phone->tasks.size(), std::size_t{1});
    }
};

QTEST_GUILESS_MAIN(TestPhoneRestore)
#include "TestPhoneRestore.moc"
