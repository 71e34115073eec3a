#include "tests/support/DRTestTable.h"
#include "tests/wizard/TransferFixture.h"
#include "wizard/DRDateText.h"

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using namespace DRMigrateKeys;
using Phase = DRMGSequenceStepTransfer::Phase;
using Run = TransferFixture;
using Work = DRTestDeviceTask::Work;

} // namespace

/// The road of a transfer: phases, results, failures.
class TestTransfer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholeRun()
    {
        Run f;
        f.begin(kEverything);
        QCOMPARE(f.analytics.takeEvents(), (QStringList{u"Migrate|iPhone Hardware Version|iPhone4,1"_s,
                                                        u"Migrate|iOS Version|6.1.3"_s, u"page:migrate/transfer"_s}));
        f.advanceTo(Phase::Done);
        const auto entry = f.sequence->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(
            DRMGSequence::kAndroidBackupEntry);
        QCOMPARE(entry->dataTypeForKey(kNotesPacket)->flags(), 0x1F);
        QCOMPARE(entry->dataTypeForKey(kMusic)->flags(), 0x1E);
        QCOMPARE(f.phases, (QList<qint64>{1, 2, 4, 8, 16, 32, 16384}));
        QCOMPARE(f.warnings, 1);

        QStringList copies;
        for (const auto& task : f.device->tasks) {
            copies.append(task->taskID());
        }
        QCOMPARE(copies, (QStringList{u"kDBRCDeviceTaskID_BackupMigrate"_s, u"kDRBRDeviceTaskID_RestoreMigrate"_s,
                                      u"copy images"_s, u"copy voicememos"_s, u"copy music"_s}));

        f.timers.advance(999ms);
        QCOMPARE(f.currentKey(), u"transfer"_s);
        f.timers.advance(1ms);
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.errorState(), 0);
        QVERIFY(!f.step().isCancelled());
        QCOMPARE(f.timers.runningCount(), std::size_t{0});
    }

    void descriptionOfThePhoneBackup()
    {
        Run f;
        f.begin({kNotes, kContacts});
        const DRBRBackupInfo fetched = f.lastTask().backupInfo();
        const QStringList packetIDs{kContactsImportPacket, kPhonebookPacket, kNotesPacket};
        QCOMPARE(fetched.packetIDs(), packetIDs);
        QCOMPARE(f.sequence->parameters().value<QStringList>(DRMGSequence::kAndroidBackupPackets), packetIDs);
        QCOMPARE(fetched.backupName(), u"Tarvex Transfer "_s + mediumDateText(f.clock.now()));
        QCOMPARE(f.sequence->parameters().value<QString>(DRMGSequence::kBackupName), fetched.backupName());
        QCOMPARE(fetched.backupDate(), f.clock.now());
        QCOMPARE(fetched.deviceSoftwareVersion(), u"1.2.3"_s);
        QCOMPARE(fetched.applicationSoftwareVersion(), u"9.8"_s);
        QVERIFY(fetched.targetPath().startsWith(f.folder.filePath(u"phone-backups/test-phone"_s)));
        QCOMPARE(f.lastTask().sortOrder(), f.backupRestore.dataTypesDefaultSortOrder());

        f.advanceTo(Phase::Restore);
        QCOMPARE(f.lastTask().work(), Work::Restore);
        QCOMPARE(f.lastTask().backupInfo().packetIDs(), packetIDs);
        QCOMPARE(f.lastTask().backupInfo().targetPath(), f.folder.filePath(u"work/TarvexTransfer"_s));
        QCOMPARE(f.step().phoneBackupFolder(), fetched.targetPath());
    }

    void withoutPacketsOnlyMediaAreCopied()
    {
        Run f;
        f.begin({kMusic, kVoiceMemos});
        f.runToItsEnd();
        QCOMPARE(f.phases, (QList<qint64>{1, 2, 4, 8, 32, 16384}));
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.errorState(), 0);
        QVERIFY(!f.sequence->parameters().contains(DRMGSequence::kBackupName));
        QCOMPARE(f.device->tasks.size(), std::size_t{2});
        QCOMPARE(f.warnings, 1);
    }

    void mediaAreNarrowedToTheSelection_data()
    {
        const DRTestTable<QStringList, int, int> row("selection", "fileKinds", "copied");
        row("photos", {kImages}, 16, 1);
        row("videos", {kVideos}, 40, 2);
        row("both", {kVideos, kImages}, 56, 3);
    }

    void mediaAreNarrowedToTheSelection()
    {
        QFETCH(const QStringList, selection);
        QFETCH(const int, fileKinds);
        QFETCH(const int, copied);
        Run f;
        f.begin(selection);
        const auto entry = f.sequence->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(
            DRMGSequence::kAndroidBackupEntry);
        QCOMPARE(entry->dataTypeKeys(), QStringList{kImages});
        const auto images = std::dynamic_pointer_cast<DRMigrateMediaDataType>(entry->dataTypeForKey(kImages));
        QCOMPARE(images->fileKindsToTransfer(), static_cast<quint32>(fileKinds));
        f.advanceTo(Phase::TransferMedia);
        QCOMPARE(f.lastTask().files().size(), static_cast<std::size_t>(copied));
    }

    void failedPacketsOfTheBackup_data()
    {
        const DRTestTable<QStringList, bool> row("failed", "goesOn");
        row("contacts import alone", {kContactsImportPacket}, true);
        row("phonebook alone", {kPhonebookPacket}, true);
        row("both of them", {kContactsImportPacket, kPhonebookPacket}, false);
        row("another alone", {kNotesPacket}, false);
        row("phonebook and another", {kPhonebookPacket, kNotesPacket}, false);
    }

    void failedPacketsOfTheBackup()
    {
        QFETCH(const QStringList, failed);
        QFETCH(const bool, goesOn);
        Run f;
        f.begin(kEverything);
        f.lastTask().finishPackets(failing(failed));
        QCOMPARE(f.currentKey(), goesOn ? u"transfer"_s : u"complete"_s);
        if (goesOn) {
            QCOMPARE(f.step().progressPhase(), Phase::Load);
            const auto entry = f.sequence->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(
                DRMGSequence::kAndroidBackupEntry);
            QCOMPARE(entry->ignoredPacketIDs(), failed); // there is nothing that could be loaded
            f.runToItsEnd();
            QCOMPARE(f.errorState(), 0);
            QCOMPARE(f.step().skippedPackets().size(), std::size_t{1});
            return;
        }
        QCOMPARE(f.errorState(), 1);
        QCOMPARE(f.step().errorCode(), 18);
        QCOMPARE(f.step().errorDetails(), QStringList{failed.join(u", "_s) + u": broken"_s});
        QVERIFY(f.step().isCancelled());
    }

    void failedStep_data()
    {
        const DRTestTable<QString, int> row("step", "phase");
        row("load", u"load "_s + kNotesPacket, 2);
        row("merge", u"merge "_s + kTelephonyPacket, 4);
        row("save", u"save "_s + kContactsImportPacket, 8);
        row("save of media", u"save "_s + kImages, 8);
    }

    void failedStep()
    {
        QFETCH(const QString, step);
        Run f;
        f.script.failingSteps = {step};
        f.begin(kEverything);
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.errorState(), 1);
        QCOMPARE(f.step().errorCode(), 18);
        QTEST(static_cast<int>(f.step().progressPhase()), "phase");
        QCOMPARE(f.step().errorDetails(), QStringList{step.section(u' ', 1)});
        QCOMPARE(f.device->tasks.size(), std::size_t{1});
        QVERIFY(f.analytics.takeEvents().contains(u"Migrate|Sequence error|Error: 6"_s));
    }

    void failedRestoreAndCopies_data()
    {
        const DRTestTable<int, QString> row("task", "detail"); // task: the one that fails, counted from the backup
        row("restore", 2, kNotesPacket + u": broken"_s);
        row("photos and videos", 3, u"file16.bin: full"_s);
        row("voice memos", 4, u"file0.bin: full"_s);
        row("music", 5, u"file4.bin: full"_s);
    }

    void failedRestoreAndCopies()
    {
        QFETCH(const int, task);
        QFETCH(const QString, detail);
        Run f;
        f.begin(kEverything);
        while (f.device->tasks.size() < static_cast<std::size_t>(task) && f.advance()) {
        }
        if (f.lastTask().work() == Work::Restore) {
            f.lastTask().finishPackets(failing({kNotesPacket}));
        } else {
            f.lastTask().finishCopy({u"full"_s});
        }
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.errorState(), 2);
        QCOMPARE(f.step().errorCode(), 19);
        QCOMPARE(f.step().errorDetails(), QStringList{detail});
        QCOMPARE(f.device->tasks.size(), static_cast<std::size_t>(task));
        QVERIFY(f.sequence->parameters().contains(DRMGSequence::kBackupName));
    }

    void skippedPacketsAreKept()
    {
        Run f;
        f.begin({kNotes, kTextMessages});
        f.advanceTo(Phase::Restore);
        const DRDCPacketProblem skipped{.packetID = kNotesPacket, .reason = u"not rebuilt"_s};
        DRDCTaskResult result;
        result.skipped = {skipped};
        f.lastTask().finishPackets(result);
        QCOMPARE(f.step().progressPhase(), Phase::Done);
        QCOMPARE(f.step().skippedPackets(), std::vector{skipped});
    }

    void phoneGone_data()
    {
        const DRTestTable<int, int, int> row("phase", "errorState", "errorCode");
        row("while backing up", 1, 1, 8);
        row("while loading", 2, 1, 8);
        row("while saving", 8, 1, 8);
        row("while restoring", 16, 2, 8);
        row("while copying", 32, 2, 19);
    }

    void phoneGone()
    {
        QFETCH(const int, phase);
        Run f;
        f.begin(kEverything);
        f.advanceTo(static_cast<Phase>(phase));
        f.device->connected = false;
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"complete"_s);
        QTEST(f.errorState(), "errorState");
        QTEST(f.step().errorCode(), "errorCode");
        QVERIFY2(!f.closingStep().remarks().join(u""_s).isEmpty(), "the page says why");
        QVERIFY(f.sequence->hasStepGroupFailed(DRMGStepGroups::kTransfer));
    }

    void nothingThatThePhoneCanTakeIsAFailure()
    {
        Run f;
        f.begin({kCalendar});
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.errorState(), 1);
        QCOMPARE(f.step().errorCode(), 18);
        QCOMPARE(f.closingStep().remarks(), QStringList{u"calendar: the phone has no app for it"_s});
    }

    void workingFolderIsEmptiedFirst()
    {
        Run f;
        const QString left = f.folder.filePath(u"work/TarvexTransfer/com.vornmobile.notes"_s);
        QVERIFY(QDir().mkpath(left));
        f.begin({kNotes});
        QVERIFY(!QDir(left).exists());
    }
};

QTEST_GUILESS_MAIN(TestTransfer)
#include "TestTransfer.moc"
