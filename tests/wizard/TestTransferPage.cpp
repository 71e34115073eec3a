#include "tests/support/DRTestTable.h"
#include "tests/wizard/TransferFixture.h"
#include "wizard/DRDateText.h"

#include <QLocale>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using namespace DRMigrateKeys;
using Phase = DRMGSequenceStepTransfer::Phase;
using Run = TransferFixture;

} // namespace

/// The page of a transfer: leaving it, its buttons, progress and texts.
class TestTransferPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutAPhoneThePageStaysIdle()
    {
        Run f;
        f.choose(kEverything);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"transfer"_s);
        QVERIFY(f.phases.isEmpty());
        QCOMPARE(f.step().stateMask(), 5);
    }

    void leavingThePage_data()
    {
        QTest::addColumn<int>("phase");
        for (const int phase : {1, 2, 4, 8, 16, 32}) {
            QTest::addRow("phase %d", phase) << phase;
        }
    }

    void leavingThePage()
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

    void lateCompletionsOfAnEarlierRunAreDropped()
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

    /// Both would write into one folder.
    void runWaitsForWhatTheOneBeforeStillDoes()
    {
        Run f;
        f.begin({kNotes});
        f.lastTask().finishPackets();
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        f.timers.advance(1000ms);
        QCOMPARE(f.device->tasks.size(), std::size_t{1});
        QCOMPARE(f.step().progressPhase(), Phase::NotStarted);
        f.queue.runAll();
        f.timers.advance(100ms);
        QCOMPARE(f.device->tasks.size(), std::size_t{2});
        QCOMPARE(f.step().progressPhase(), Phase::BackUp);
    }

    /// Who waits for the folder must not wait for ever.
    void discardingComesToItsEnd()
    {
        Run f;
        f.begin({kNotes});
        f.lastTask().finishPackets();
        f.step().discardWorkingFiles(); // has to wait for the load
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        QVERIFY(f.step().isDiscarding());
        f.queue.runAll();
        f.timers.advance(100ms);
        QVERIFY(f.step().isDiscarding());
        f.queue.runAll();
        QVERIFY(!f.step().isDiscarding());
    }

    void workingFilesGoOnceNothingUsesThem()
    {
        Run f;
        f.begin({kNotes});
        f.lastTask().finishPackets(); // and its load is under way
        const QString left = f.folder.filePath(u"work/TarvexTransfer/com.vornmobile.notes"_s);
        QVERIFY(QDir().mkpath(left));
        f.step().discardWorkingFiles();
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.timers.advance(1000ms);
        QVERIFY(QDir(left).exists());
        while (f.queue.runOneInBackground() || f.queue.runMain()) {
        }
        f.timers.advance(100ms);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer); // which would fill the folder again
        f.timers.advance(1000ms);
        QVERIFY(QDir(left).exists());
        QCOMPARE(f.step().progressPhase(), Phase::NotStarted);
        f.queue.runAll();
        QVERIFY(!QDir(left).exists());
        f.timers.advance(100ms);
        QCOMPARE(f.step().progressPhase(), Phase::BackUp);
    }

    void handlersOutliveTheWizard()
    {
        Run f;
        f.begin({kNotes});
        const auto fetching = f.device->tasks.back();
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        f.lastTask().finishPackets();
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        f.sequence.reset();
        fetching->finishPackets();
        f.queue.runAll();
        f.timers.advance(5000ms);
        QVERIFY(f.queue.isEmpty());
    }

    void whoIsWarnedMayStopTheRun()
    {
        Run f;
        QObject::connect(&f.step(), &DRMGSequenceStepTransfer::restoreWillBegin, f.sequence.get(), &DRSequence::cancel);
        f.begin({kNotes});
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), QString());
        QVERIFY2(f.device->tasks.size() == 1, "nothing is restored");
    }

    void buttons()
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

    void progressTicks()
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

    void timeTexts_data()
    {
        const DRTestTable<double, QString> row("seconds", "text");
        row("none", 0.0, u"00:00"_s);
        row("truncated", 59.99, u"00:59"_s);
        row("minutes and seconds", 125.0, u"02:05"_s);
        row("just below an hour", 3599.9, u"59:59"_s);
        row("an hour", 3600.0, u"01:00"_s);
        row("hours and minutes", 3725.0, u"01:02"_s);
        row("beyond two digits", 400000.0, u"111:06"_s);
        row("not a number", std::numeric_limits<double>::quiet_NaN(), u"00:00"_s);
    }

    void timeTexts()
    {
        QFETCH(const double, seconds);
        QTEST(DRMGSequenceStepTransfer::timeText(seconds), "text");
    }

    void mediumDateTexts_data()
    {
        const DRTestTable<QLocale, QString> row("locale", "date");
        row("British", QLocale(QLocale::English, QLocale::UnitedKingdom), u"6 May 2014, "_s);
        row("German", QLocale(QLocale::German, QLocale::Germany), u"06.05.2014, "_s);
    }

    void mediumDateTexts()
    {
        QFETCH(const QLocale, locale);
        const QLocale before;
        QLocale::setDefault(locale);
        const QString text = mediumDateText(DRTestClock().now());
        QLocale::setDefault(before);
        QFETCH(const QString, date);
        QCOMPARE(text, date + DRTestClock().now().toLocalTime().toString(u"HH:mm:ss"_s));
    }
};

QTEST_GUILESS_MAIN(TestTransferPage)
#include "TestTransferPage.moc"
