#include "platform/ui/DRDarkStyle.h"
#include "tests/app/gui/DRWizardRun.h"
#include "tests/support/DRTestTable.h"

#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGSequenceStepTransfer::Phase;

constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine

const QString kNext = u"next"_s;

} // namespace

/// Closing the window while content moves.
class TestWizardClosing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }

    void closingWhileATransferRuns_data()
    {
        const DRTestTable<int, QString> row("button", "endsOn"); // button: of the question
        row("stop", 0, {});
        row("continue", 1, DRMGStepKeys::kComplete);
    }

    void closingWhileATransferRuns()
    {
        QFETCH(int, button);
        QFETCH(QString, endsOn);
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        auto& transfer = run.step<DRMGSequenceStepTransfer>(DRMGStepKeys::kTransfer);
        bool hasAsked = false;
        connect(&transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, run.window.get(), [&] {
            if (transfer.progressPhase() == Phase::Load) {
                QVERIFY(!run.window->close());
                auto* const question = run.window->findChild<QMessageBox*>();
                if (question == nullptr) {
                    QFAIL("nothing is asked");
                }
                QVERIFY(saveScreenshot(*question, u"close-question"_s));
                hasAsked = true;
                question->buttons().at(button)->click();
            }
        });
        run.click(kNext);
        run.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(hasAsked, kLongest);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), endsOn, kLongest);
        QCOMPARE(run.window->isVisible(), !endsOn.isEmpty());
    }

    /// The second between the end of the run and its closing page.
    void closingBeforeTheClosingPage()
    {
        const DRWizardPlaces places;
        const DRWizardRun run(places);
        auto& transfer = run.step<DRMGSequenceStepTransfer>(DRMGStepKeys::kTransfer);
        int endings = 0;
        bool isClosed = false;
        connect(&transfer, &DRMGSequenceStepTransfer::willEnd, run.window.get(), [&endings] { ++endings; });
        connect(
            &transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, run.window.get(),
            [&] { isClosed = isClosed || (transfer.progressPhase() == Phase::Done && run.window->close()); },
            Qt::QueuedConnection);
        run.click(kNext);
        run.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(isClosed, kLongest);
        QVERIFY2(endings == 1, "the ledger is settled");
        QVERIFY(!run.window->isVisible());
    }
};

QTEST_MAIN(TestWizardClosing)

#include "TestWizardClosing.moc"
