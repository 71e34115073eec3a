#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/DRMediumDateText.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QLocale>
#include <QTest>

#include <functional>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using namespace DRMigrateKeys;
using Phase = DRMGSequenceStepTransfer::Phase;
using Work = DRTestDeviceTask::Work;

/// A wizard whose phone offers four packets, with the transfer's phases written down.
struct Run : WizardFixture {
    Run() : WizardFixture(uR"({"IDD_STEPWIZ_TRANSFER_IDC_TIME_REMAINING":"about %s left"})"_s)
    {
        device->packets = {kContactsImportPacket, kTelephonyPacket, kNotesPacket, kPhonebookPacket};
        script.iPhoneEntries[kImages] = {file(DRMigrateFileKinds::kPhotos, 100), file(0x08, 1000), file(0x20, 10000)};
        script.iPhoneEntries[kMusic] = {file(DRMigrateFileKinds::kMusic, 7)};
        script.iPhoneEntries[kVoiceMemos] = {file(0, 5)};
        QObject::connect(&step(), &DRMGSequenceStepTransfer::progressPhaseChanged, &step(),
                         [this] { phases.append(static_cast<qint64>(step().progressPhase())); });
        QObject::connect(&step(), &DRMGSequenceStepTransfer::restoreWillBegin, &step(), [this] { ++warnings; });
    }

    [[nodiscard]] DRMGSequenceStepTransfer& step() const
    {
        return *qobject_cast<DRMGSequenceStepTransfer*>(sequence->stepForKey(DRMGStepKeys::kTransfer));
    }
    [[nodiscard]] int errorState() const
    {
        return static_cast<int>(
            qobject_cast<DRMGSequenceStepComplete*>(sequence->stepForKey(DRMGStepKeys::kComplete))->errorState());
    }

    void begin(const QStringList& selection)
    {
        choose(selection);
        connectPhone();
        sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
    }

    [[nodiscard]] DRTestDeviceTask& lastTask() const { return *device->tasks.back(); }

    /// Ends what the run waits for, successfully. False when it waits for nothing.
    bool advance()
    {
        if (queue.runMain() || queue.runOneInBackground()) {
            return true;
        }
        if (device->tasks.size() == m_finishedTasks) {
            return false;
        }
        m_finishedTasks = device->tasks.size();
        if (lastTask().work() == Work::Copy) {
            lastTask().finishCopy();
        } else {
            lastTask().finishPackets();
        }
        return true;
    }

    /// Advances until the phase is entered.
    void advanceTo(Phase phase)
    {
        while (step().progressPhase() != phase && advance()) {
        }
        QCOMPARE(step().progressPhase(), phase);
    }

    /// Advances until the run ends or waits for nothing more.
    void runToItsEnd()
    {
        while (advance()) {
        }
        timers.advance(1000ms);
    }

    QList<qint64> phases;
    int warnings = 0;

private:
    std::size_t m_finishedTasks = 0;
};

const QStringList kEverything{kContacts, kTextMessages, kNotes, kImages, kVideos, kMusic, kVoiceMemos};

DRDCTaskResult failing(const QStringList& packetIDs)
{
    DRDCTaskResult result;
    for (const QString& packetID : packetIDs) {
        result.failures.push_back({.packetID = packetID, .reason = u"broken"_s});
    }
    return result;
}

} // namespace

class TestTransfer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholeRun();
    void descriptionOfThePhoneBackup();
    void withoutPacketsOnlyMediaAreCopied();
    void mediaAreNarrowedToTheSelection_data();
    void mediaAreNarrowedToTheSelection();
    void failedPacketsOfTheBackup_data();
    void failedPacketsOfTheBackup();
    void failedStep_data();
    void failedStep();
    void failedRestoreAndCopies_data();
    void failedRestoreAndCopies();
    void skippedPacketsAreKept();
    void phoneGone_data();
    void phoneGone();
    void withoutAPhoneThePageStaysIdle();
    void nothingThatThePhoneCanTakeIsAFailure();
    void workingFolderIsEmptiedFirst();
    void leavingThePage_data();
    void leavingThePage();
    void lateCompletionsOfAnEarlierRunAreDropped();
    void handlersOutliveTheWizard();
    void whoIsWarnedMayStopTheRun();
    void buttons();
    void progressTicks();
    void timeTexts_data();
    void timeTexts();
    void mediumDateTexts_data();
    void mediumDateTexts();
};

void TestTransfer::wholeRun()
{
    Run f;
    f.begin(kEverything);
    QCOMPARE(f.analytics.takeEvents(), (QStringList{u"Migrate|iPhone Hardware Version|iPhone4,1"_s,
                                                    u"Migrate|iOS Version|6.1.3"_s, u"page:migrate/transfer"_s}));
    f.advanceTo(Phase::Done);
    const auto entry =
        f.sequence->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(DRMGSequence::kAndroidBackupEntry);
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

void TestTransfer::descriptionOfThePhoneBackup()
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

void TestTransfer::withoutPacketsOnlyMediaAreCopied()
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

void TestTransfer::mediaAreNarrowedToTheSelection_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<int>("fileKinds");
    QTest::addColumn<int>("copied");
    QTest::newRow("photos") << QStringList{kImages} << 16 << 1;
    QTest::newRow("videos") << QStringList{kVideos} << 40 << 2;
    QTest::newRow("both") << QStringList{kVideos, kImages} << 56 << 3;
}

void TestTransfer::mediaAreNarrowedToTheSelection()
{
    QFETCH(const QStringList, selection);
    QFETCH(const int, fileKinds);
    QFETCH(const int, copied);
    Run f;
    f.begin(selection);
    const auto entry =
        f.sequence->parameters().value<std::shared_ptr<DRMigrateAndroidBackupEntry>>(DRMGSequence::kAndroidBackupEntry);
    QCOMPARE(entry->dataTypeKeys(), QStringList{kImages});
    const auto images = std::dynamic_pointer_cast<DRMigrateMediaDataType>(entry->dataTypeForKey(kImages));
    QCOMPARE(images->fileKindsToTransfer(), static_cast<quint32>(fileKinds));
    f.advanceTo(Phase::TransferMedia);
    QCOMPARE(f.lastTask().files().size(), static_cast<std::size_t>(copied));
}

void TestTransfer::failedPacketsOfTheBackup_data()
{
    QTest::addColumn<QStringList>("failed");
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("contacts import alone") << QStringList{kContactsImportPacket} << true;
    QTest::newRow("phonebook alone") << QStringList{kPhonebookPacket} << true;
    QTest::newRow("both of them") << QStringList{kContactsImportPacket, kPhonebookPacket} << false;
    QTest::newRow("another alone") << QStringList{kNotesPacket} << false;
    QTest::newRow("phonebook and another") << QStringList{kPhonebookPacket, kNotesPacket} << false;
}

void TestTransfer::failedPacketsOfTheBackup()
{
    QFETCH(const QStringList, failed);
    QFETCH(const bool, goesOn);
    Run f;
    f.begin(kEverything);
    f.lastTask().finishPackets(failing(failed));
    QCOMPARE(f.currentKey(), goesOn ? u"transfer"_s : u"complete"_s);
    if (goesOn) {
        QCOMPARE(f.step().progressPhase(), Phase::Load);
        return;
    }
    QCOMPARE(f.errorState(), 1);
    QCOMPARE(f.step().errorCode(), 18);
    QCOMPARE(f.step().errorDetails().size(), failed.size());
    QCOMPARE(f.step().errorDetails().front(), failed.front() + u": broken"_s);
    QVERIFY(f.step().isCancelled());
}

void TestTransfer::failedStep_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<int>("phase");
    QTest::newRow("load") << u"load "_s + kNotesPacket << 2;
    QTest::newRow("merge") << u"merge "_s + kTelephonyPacket << 4;
    QTest::newRow("save") << u"save "_s + kContactsImportPacket << 8;
    QTest::newRow("save of media") << u"save "_s + kImages << 8;
}

void TestTransfer::failedStep()
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

void TestTransfer::failedRestoreAndCopies_data()
{
    QTest::addColumn<int>("task"); ///< the one that fails, counted from the backup
    QTest::addColumn<QString>("detail");
    QTest::newRow("restore") << 2 << kNotesPacket + u": broken"_s;
    QTest::newRow("photos and videos") << 3 << u"file16.bin: full"_s;
    QTest::newRow("voice memos") << 4 << u"file0.bin: full"_s;
    QTest::newRow("music") << 5 << u"file4.bin: full"_s;
}

void TestTransfer::failedRestoreAndCopies()
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

void TestTransfer::skippedPacketsAreKept()
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

void TestTransfer::phoneGone_data()
{
    QTest::addColumn<int>("phase");
    QTest::addColumn<int>("errorState");
    QTest::addColumn<int>("errorCode");
    QTest::newRow("while backing up") << 1 << 1 << 8;
    QTest::newRow("while loading") << 2 << 1 << 8;
    QTest::newRow("while saving") << 8 << 1 << 8;
    QTest::newRow("while restoring") << 16 << 2 << 8;
    QTest::newRow("while copying") << 32 << 2 << 19;
}

void TestTransfer::phoneGone()
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
}

void TestTransfer::withoutAPhoneThePageStaysIdle()
{
    Run f;
    f.choose(kEverything);
    f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
    f.runToItsEnd();
    QCOMPARE(f.currentKey(), u"transfer"_s);
    QVERIFY(f.phases.isEmpty());
    QCOMPARE(f.step().stateMask(), 5);
}

void TestTransfer::nothingThatThePhoneCanTakeIsAFailure()
{
    Run f;
    f.begin({kCalendar});
    QCOMPARE(f.currentKey(), u"complete"_s);
    QCOMPARE(f.errorState(), 1);
    QCOMPARE(f.step().errorCode(), 18);
}

void TestTransfer::workingFolderIsEmptiedFirst()
{
    Run f;
    const QString left = f.folder.filePath(u"work/TarvexTransfer/com.vornmobile.notes"_s);
    QVERIFY(QDir().mkpath(left));
    f.begin({kNotes});
    QVERIFY(!QDir(left).exists());
}

void TestTransfer::leavingThePage_data()
{
    QTest::addColumn<int>("phase");
    for (const int phase : {1, 2, 4, 8, 16, 32}) {
        QTest::addRow("phase %d", phase) << phase;
    }
}

void TestTransfer::leavingThePage()
{
    QFETCH(const int, phase);
    Run f;
    f.begin(kEverything);
    f.advanceTo(static_cast<Phase>(phase));
    const auto tasks = f.device->tasks.size();
    f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
    QVERIFY(f.step().isCancelled());
    QVERIFY(!f.step().isAnimating());
    QCOMPARE(f.timers.runningCount(), std::size_t{0});
    f.runToItsEnd();
    QCOMPARE(f.currentKey(), u"welcome"_s);
    QCOMPARE(f.device->tasks.size(), tasks);
    QCOMPARE(static_cast<int>(f.step().progressPhase()), phase);
}

void TestTransfer::lateCompletionsOfAnEarlierRunAreDropped()
{
    Run f;
    f.begin({kNotes});
    const auto earlier = f.device->tasks.back();
    f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
    f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
    QVERIFY(!f.step().isCancelled());
    earlier->finishPackets(failing({kNotesPacket}));
    QCOMPARE(f.currentKey(), u"transfer"_s);
    QCOMPARE(f.step().progressPhase(), Phase::BackUp);
    f.runToItsEnd();
    QCOMPARE(f.currentKey(), u"complete"_s);
    QCOMPARE(f.errorState(), 0);
}

void TestTransfer::handlersOutliveTheWizard()
{
    Run f;
    f.begin({kNotes});
    const auto fetching = f.device->tasks.back();
    f.lastTask().finishPackets();
    f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
    f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
    f.sequence.reset();
    f.device->tasks.back()->finishPackets();
    f.queue.runAll();
    f.timers.advance(5000ms);
    QVERIFY(f.queue.isEmpty());
}

void TestTransfer::whoIsWarnedMayStopTheRun()
{
    Run f;
    QObject::connect(&f.step(), &DRMGSequenceStepTransfer::restoreWillBegin, f.sequence.get(), &DRSequence::cancel);
    f.begin({kNotes});
    f.runToItsEnd();
    QCOMPARE(f.currentKey(), QString());
    QVERIFY2(f.device->tasks.size() == 1, "nothing is restored");
}

void TestTransfer::buttons()
{
    Run f;
    f.begin({kNotes});
    QCOMPARE(f.step().stateMask(), 5);
    QCOMPARE(f.sequence->resolvedLocalizationKey(u"dr_sequence_button_cancel"_s), u"IDD_STEPWIZ_SHEET_IDCANCEL"_s);
    f.advanceTo(Phase::Restore);
    QCOMPARE(f.step().stateMask(), 4);
    f.sequence->pressCancel();
    f.sequence->pressNext();
    QCOMPARE(f.currentKey(), u"transfer"_s);
    f.runToItsEnd();
    QCOMPARE(f.step().stateMask(), 7);
}

void TestTransfer::progressTicks()
{
    Run f;
    f.begin({kNotes});
    QCOMPARE(f.step().progressHtml(), u"about 00:04 left"_s);
    QCOMPARE(f.step().secondsRemaining(), 4.4);
    int ticks = 0;
    QObject::connect(&f.step(), &DRMGSequenceStepTransfer::progressChanged, &f.step(), [&ticks] { ++ticks; });
    f.lastTask().finishPackets();
    f.timers.advance(300ms);
    QCOMPARE(ticks, 3);
    QCOMPARE(f.step().progressFraction(), 0.5);
}

void TestTransfer::timeTexts_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << u"00:00"_s;
    QTest::newRow("truncated") << 59.99 << u"00:59"_s;
    QTest::newRow("minutes and seconds") << 125.0 << u"02:05"_s;
    QTest::newRow("just below an hour") << 3599.9 << u"59:59"_s;
    QTest::newRow("an hour") << 3600.0 << u"01:00"_s;
    QTest::newRow("hours and minutes") << 3725.0 << u"01:02"_s;
    QTest::newRow("beyond two digits") << 400000.0 << u"111:06"_s;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << u"00:00"_s;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << u"00:00"_s;
}

void TestTransfer::timeTexts()
{
    QFETCH(const double, seconds);
    QTEST(DRMGSequenceStepTransfer::timeText(seconds), "text");
}

void TestTransfer::mediumDateTexts_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("date");
    QTest::newRow("British") << QLocale(QLocale::English, QLocale::UnitedKingdom) << u"6 May 2014, "_s;
    QTest::newRow("German") << QLocale(QLocale::German, QLocale::Germany) << u"06.05.2014, "_s;
}

void TestTransfer::mediumDateTexts()
{
    QFETCH(const QLocale, locale);
    const QLocale before;
    QLocale::setDefault(locale);
    const QString text = mediumDateText(DRTestClock().now());
    QLocale::setDefault(before);
    QFETCH(const QString, date);
    QCOMPARE(text, date + DRTestClock().now().toLocalTime().toString(u"HH:mm:ss"_s));
}

QTEST_GUILESS_MAIN(TestTransfer)
#include "TestTransfer.moc"
