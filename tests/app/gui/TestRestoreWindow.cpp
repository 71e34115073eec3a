#include "platform/core/DRPropertyList.h"
#include "platform/ui/DRDarkStyle.h"
#include "tests/app/gui/DRRestoreWindowRun.h"
#include "tests/support/DRTestTable.h"
#include "wizard/restore/DRMGRestoreKeys.h"

#include <QDirIterator>
#include <QLabel>
#include <QMessageBox>
#include <QTableWidget>
#include <QTimer>

#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGRestoreStepPutBack::Phase;

constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine

const QString kNext = u"next"_s;
const QString kNotes = u"com.vornmobile.notes"_s;

/// The bytes of each packet of the folder, by packet ID.
std::map<QString, QByteArray> packetsIn(const QString& folder)
{
    std::map<QString, QByteArray> packets;
    const QDir ofApps(folder);
    for (const QString& packetID : ofApps.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        packets[packetID] = readFile(ofApps.filePath(packetID + u"/fullbackupdata"_s));
    }
    return packets;
}

/// A finished transfer, and the window that undoes it, opened from its closing page.
struct Undo {
    explicit Undo(const DRWizardPlaces& of) : places(of), before(packets()), wizard(of)
    {
        transfer();
        wizard.step<DRMGSequenceStepComplete>(DRMGStepKeys::kComplete).linkClicked(u"backup"_s);
    }

    void transfer() const
    {
        wizard.click(kNext);
        wizard.click(kNext);
        QTRY_COMPARE_WITH_TIMEOUT(wizard.pageKey(), DRMGStepKeys::kComplete, kLongest);
    }

    [[nodiscard]] std::map<QString, QByteArray> packets() const
    {
        return packetsIn(places.options.phoneFolder + u"/packets"_s);
    }
    [[nodiscard]] DRRestoreWindowRun run() const { return DRRestoreWindowRun(*wizard.window->restoreWindow()); }

    /// The phone backup of the transfer.
    [[nodiscard]] QString backup() const { return wizard.migration->transferResult().phoneBackupPath; }

    const DRWizardPlaces& places;
    std::map<QString, QByteArray> before;
    DRWizardRun wizard;
};

/// Calls `then` when the phase begins.
void atPhase(const DRRestoreWindowRun& run, Phase phase, const std::function<void()>& then)
{
    auto& step = run.sequence().putBack();
    QObject::connect(&step, &DRMGRestoreStepPutBack::workPhaseChanged, &run.widget(), [&step, phase, then] {
        if (step.phase() == phase) {
            then();
        }
    });
}

} // namespace

/// The real window that puts a phone's apps back, used as a person uses it after a transfer.
class TestRestoreWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { DRDarkStyle::applyToApplication(); }

    void fromTheClosingPageToThePhoneAsItWas()
    {
        const DRWizardPlaces places;
        const Undo undo(places);
        const auto moved = undo.packets();
        QVERIFY(moved != undo.before);
        const DRRestoreWindowRun run = undo.run();
        QVERIFY(!undo.wizard.window->isVisible());
        auto* const table = run.find<QTableWidget>(QString());
        QVERIFY(table->hasFocus());
        QCOMPARE(table->currentRow(), 0);
        QVERIFY(run.takeScreenshot(u"restore-choose"_s));
        atPhase(run, Phase::Restore, [&run] { QVERIFY(run.takeScreenshot(u"restore-put-back"_s)); });
        run.press(Qt::Key_B, Qt::AltModifier);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGRestoreKeys::kOutcome, kLongest);
        QVERIFY(run.takeScreenshot(u"restore-outcome"_s));
        QVERIFY(!run.sequence().outcome().hasFailed());
        QCOMPARE(undo.packets(), undo.before);
        QCOMPARE(packetsIn(run.sequence().outcome().keptPath()), moved);
        run.press(Qt::Key_Return);
        QVERIFY(!run.widget().isVisible());
    }

    /// The one window closes as the other opens, and the last one ends the program.
    void programGoesOnBetweenTheWindows()
    {
        const DRWizardPlaces places;
        const DRWizardRun wizard(places);
        bool isOpen = false;
        const auto closeTheLast = [&] {
            isOpen = wizard.window->restoreWindow()->isVisible();
            wizard.window->restoreWindow()->close();
        };
        QTimer::singleShot(0, wizard.window.get(), [&] {
            wizard.window->close(); // as the link of the closing page does first
            wizard.window->showPhoneBackups();
            // A request to quit is posted, and comes through before a timer does.
            QTimer::singleShot(0, wizard.window->restoreWindow(), closeTheLast);
        });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(isOpen);
    }

    void whatCannotGoBack_data()
    {
        const DRTestTable<QString, bool> row("harm", "isSeenAtOnce");
        row("other-phone", u"identifier"_s, true);
        row("damaged-packet", u"packet"_s, false);
        row("no-backups", u"all"_s, true);
    }

    void whatCannotGoBack()
    {
        QFETCH(const QString, harm);
        QFETCH(const bool, isSeenAtOnce);
        const DRWizardPlaces places;
        const Undo undo(places);
        const auto moved = undo.packets();
        if (harm == u"identifier") {
            const QString file = undo.backup() + u"/BackupData.plist"_s;
            auto description = DRPropertyList::readDictionary(file).value_or(QVariantMap());
            description.insert(u"DeviceIdentifier"_s, u"0123456789abcdef"_s);
            DRWizardPlaces::write(file, DRPropertyList::xmlFromDictionary(description));
        } else if (harm == u"packet") {
            QFile packet(undo.backup() + u'/' + kNotes + u"/fullbackupdata"_s);
            QVERIFY(packet.resize(packet.size() - 20));
        } else {
            QVERIFY(QDir(undo.wizard.startup.phoneBackupsFolder()).removeRecursively());
        }
        undo.wizard.window->restoreWindow()->sequence().start(); // looks again
        const DRRestoreWindowRun run = undo.run();
        QCOMPARE(run.find(kNext)->isEnabled(), !isSeenAtOnce);
        run.click(kNext);
        const QString key = isSeenAtOnce ? DRMGRestoreKeys::kChoose : DRMGRestoreKeys::kOutcome;
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), key, kLongest);
        QVERIFY(run.takeScreenshot(u"restore-"_s + QString::fromLatin1(QTest::currentDataTag())));
        QCOMPARE(run.find<QTableWidget>(QString()) != nullptr, harm == u"identifier");
        QCOMPARE(undo.packets(), moved);
        if (!isSeenAtOnce) {
            QVERIFY(run.sequence().outcome().hasFailed());
            run.press(Qt::Key_Escape);
            QCOMPARE(run.pageKey(), DRMGRestoreKeys::kChoose);
        }
    }

    void phoneChosenInTheWindow()
    {
        DRWizardPlaces places;
        {
            const Undo undo(places);
        }
        const QString phone = std::exchange(places.options.phoneFolder, QString());
        const DRWizardRun wizard(places);
        QVERIFY(wizard.takeScreenshot(u"welcome-again"_s));
        wizard.click(u"wizard_show_phone_backups"_s);
        QVERIFY(!wizard.window->isVisible());
        const DRRestoreWindowRun run(*wizard.window->restoreWindow());
        QVERIFY(!run.find(kNext)->isEnabled());
        QVERIFY(run.find(u"wizard_choose_phone"_s) != nullptr);
        QVERIFY(run.takeScreenshot(u"restore-no-phone"_s));
        run.window().usePhone(places.options.backupsFolder);
        auto* const box = run.widget().findChild<QMessageBox*>();
        QVERIFY2(box != nullptr, "a folder without a phone");
        box->close();
        run.window().usePhone(phone);
        QVERIFY(run.find(kNext)->isEnabled());
        QCOMPARE(run.find(u"wizard_choose_phone"_s), nullptr);
    }

    void closingWhileItRuns_data()
    {
        // button: of the question; isChanged: whether the apps are put back then
        const DRTestTable<Phase, int, bool> row("phase", "button", "isChanged");
        row("stop", Phase::BackUp, 0, false);
        row("continue", Phase::BackUp, 1, true);
        row("too late", Phase::Restore, 0, true);
    }

    void closingWhileItRuns()
    {
        QFETCH(const Phase, phase);
        QFETCH(const int, button);
        QFETCH(const bool, isChanged);
        const DRWizardPlaces places;
        const Undo undo(places);
        const DRRestoreWindowRun run = undo.run();
        bool hasAsked = false;
        atPhase(run, phase, [&] {
            QVERIFY(!run.widget().close());
            auto* const question = run.widget().findChild<QMessageBox*>();
            QVERIFY(question != nullptr);
            QCOMPARE(question->buttons().size(), phase == Phase::BackUp ? 2 : 1);
            QVERIFY(saveScreenshot(*question, phase == Phase::BackUp ? u"restore-stop"_s : u"restore-writing"_s));
            hasAsked = true;
            question->buttons().at(button)->click();
        });
        run.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(hasAsked, kLongest);
        QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), isChanged ? DRMGRestoreKeys::kOutcome : QString(), kLongest);
        QCOMPARE(run.widget().isVisible(), isChanged);
        QCOMPARE(undo.packets() == undo.before, isChanged);
    }

    void askedToEnd_data()
    {
        const DRTestTable<Phase, bool> row("phase", "isChanged");
        row("before the phone is written", Phase::BackUp, false);
        row("while it is written", Phase::Restore, true);
    }

    /// As by a signal: what was begun is finished first.
    void askedToEnd()
    {
        QFETCH(const Phase, phase);
        QFETCH(const bool, isChanged);
        const DRWizardPlaces places;
        const Undo undo(places);
        const DRRestoreWindowRun run = undo.run();
        bool hasEnded = false;
        atPhase(run, phase, [&] {
            run.window().endWhenPossible([&hasEnded] { hasEnded = true; });
            QCOMPARE(hasEnded, !isChanged);
        });
        run.click(kNext);
        QTRY_VERIFY_WITH_TIMEOUT(hasEnded, kLongest);
        QVERIFY(!run.widget().isVisible());
        QCOMPARE(undo.packets() == undo.before, isChanged);
    }
};

QTEST_MAIN(TestRestoreWindow)

#include "TestRestoreWindow.moc"
