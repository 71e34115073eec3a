#include "tests/support/DRTestTable.h"
#include "tests/wizard/RestoreFixture.h"
#include "wizard/DRTransferLedger.h"
#include "wizard/restore/DRMGRestoreKeys.h"

#include <QSignalSpy>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Ending = DRPhoneRestoreResult::Ending;
using Phase = DRMGRestoreStepPutBack::Phase;
using Failures = std::vector<DRDCPacketProblem>;

const QString& kNotes = RestoreFixture::kNotes;
const QString& kCalendar = RestoreFixture::kCalendar;

QStringList namesIn(const DRMGRestoreStepChoose& step)
{
    QStringList names;
    for (const auto& row : step.rows()) {
        names << row.name;
    }
    return names;
}

} // namespace

/// The steps that put a phone's apps back, with a phone that does what a test says.
class TestRestore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void choiceIsMade_data()
    {
        // preferred: the day of the backup that is asked for; 0 for none
        const DRTestTable<int, QString, bool> row("preferred", "selected", "canGoOn");
        row("the newest of this phone", 0, u"May 5"_s, true);
        row("the one that was asked for", 3, u"May 3"_s, true);
        row("asked for, of another phone", 7, u"May 7"_s, false);
        row("asked for, and gone", 9, u"May 5"_s, true);
    }

    void choiceIsMade()
    {
        QFETCH(const int, preferred);
        RestoreFixture f;
        for (const int day : {5, 3}) {
            f.addPhoneBackup(day);
        }
        f.addPhoneBackup(7, u"other"_s);
        f.connectPhone();
        f.start(
            preferred == 0
                ? QString()
                : u"%1/%2/%3"_s.arg(f.backupsFolder(), preferred == 7 ? u"other"_s : u"test-phone"_s).arg(preferred));
        const auto& step = f.restore->choose();
        QCOMPARE(namesIn(step), (QStringList{u"May 7"_s, u"May 5"_s, u"May 3"_s}));
        QTEST(step.rows().at(static_cast<std::size_t>(step.selectedRow())).name, "selected");
        QTEST(f.canGoOn(), "canGoOn");
    }

    void whyNot_data()
    {
        using Harm = std::function<void(RestoreFixture&, const QString&)>;
        const DRTestTable<QString, QString, Harm> row("state", "reason", "harm"); // identifiers of texts
        row("nothing against it", u"wholly"_s, {}, [](RestoreFixture&, const QString&) {});
        row("one app's data are missing", u"in_part"_s, {}, [](RestoreFixture&, const QString& backup) {
            QVERIFY(QFile::remove(DRPhoneBackup::pathOfPacket(backup, kNotes)));
        });
        row("no description", u"no_backup"_s, u"why_no_backup"_s,
            [](RestoreFixture&, const QString& backup) { QVERIFY(QFile::remove(backup + u"/BackupData.plist"_s)); });
        row("foreign packet", u"damaged"_s, u"why_damaged"_s, [](RestoreFixture&, const QString& backup) {
            QVERIFY(writeFile(DRPhoneBackup::pathOfPacket(backup, kNotes), "PK"));
        });
        row("no phone", u"no_phone"_s, u"why_no_phone"_s,
            [](RestoreFixture& f, const QString&) { f.devices.setActiveDevice(nullptr); });
        row("locked phone", u"no_phone"_s, u"why_not_ready"_s,
            [](RestoreFixture& f, const QString&) { f.device->stateFlags = 0; });
        row("old phone", u"no_phone"_s, u"why_too_old"_s,
            [](RestoreFixture& f, const QString&) { f.device->baseVersion = 1; });
        row("phone without the apps", u"no_apps"_s, u"why_no_apps"_s,
            [](RestoreFixture& f, const QString&) { f.device->packets.clear(); });
    }

    void whyNot()
    {
        QFETCH(const std::function<void(RestoreFixture&, const QString&)>, harm);
        QFETCH(const QString, state);
        QFETCH(const QString, reason);
        RestoreFixture f;
        f.connectPhone();
        const QString backup = f.addPhoneBackup(1);
        harm(f, backup);
        f.start(backup);
        const auto& step = f.restore->choose();
        QCOMPARE(step.rows().at(0).state, u"wizard_restore_state_"_s + state);
        QCOMPARE(f.canGoOn(), reason.isEmpty());
        QCOMPARE(step.planText().isEmpty(), !reason.isEmpty());
        QVERIFY2(reason.isEmpty() ? step.statusText().isEmpty() : step.statusText().contains(reason),
                 qPrintable(step.statusText()));
        f.restore->next(); // whatever the frame's button says
        QCOMPARE(f.key(), reason.isEmpty() ? DRMGRestoreKeys::kPutBack : DRMGRestoreKeys::kChoose);
    }

    void waitsForTheWorkingFolder()
    {
        RestoreFixture f;
        beginIn(f);
        f.isWorkingFolderInUse = true;
        f.queue.runAll();
        f.timers.advance(std::chrono::seconds(1));
        QVERIFY(f.device->tasks.empty());
        f.isWorkingFolderInUse = false;
        f.timers.advance(std::chrono::seconds(1));
        QCOMPARE(f.device->tasks.size(), std::size_t{1});
        f.restore->pressCancel();
        QVERIFY(f.answer(RestoreFixture::packet("new")));
    }

    void noBackups()
    {
        RestoreFixture f;
        f.connectPhone();
        f.start();
        QVERIFY(!f.canGoOn() && f.restore->choose().rows().empty());
        QCOMPARE(f.restore->choose().statusText(), u"wizard_restore_none"_s);
        QVERIFY(!f.restore->choose().wantsPhone());
    }

    void phoneComesAndGoes()
    {
        RestoreFixture f;
        f.addPhoneBackup(1);
        f.addPhoneBackup(2);
        f.start();
        QVERIFY(f.restore->choose().wantsPhone() && !f.canGoOn());
        f.connectPhone();
        QVERIFY(!f.restore->choose().wantsPhone() && f.canGoOn());
        f.restore->choose().selectRow(1);
        f.device->connected = false;
        f.timers.advance(std::chrono::milliseconds(1000));
        QVERIFY(!f.canGoOn());
        f.device->connected = true;
        f.timers.advance(std::chrono::milliseconds(1000));
        QVERIFY(f.canGoOn());
        QCOMPARE(f.restore->choose().selectedRow(), 1); // what a person chose stays
        f.device->connected = false;
        f.restore->pressNext(); // before the next look
        QCOMPARE(f.key(), DRMGRestoreKeys::kChoose);
    }

    void appsGoBack()
    {
        RestoreFixture f;
        beginIn(f);
        auto& step = f.restore->putBack();
        QCOMPARE(step.phase(), Phase::Check);
        QVERIFY(!step.progressFraction() && f.device->tasks.empty());
        f.queue.runAll();
        QCOMPARE(step.phase(), Phase::BackUp);
        QVERIFY((step.stateMask() & DRSequenceStep::kStateCancelEnabled) != 0 && !step.isWriting());
        QCOMPARE(kindsOnPhone(f), QStringList{u"notes"_s});
        f.clock.set(f.clock.now().addSecs(30));
        f.device->tasks.back()->setProgress(0.75);
        f.center.post({.name = DRDCNotifications::kTaskDidUpdate,
                       .object = DRDCDeviceTaskPointer(f.device->tasks.back()),
                       .userInfo = {}});
        QVERIFY(step.timeText().contains(u"TIME_REMAINING"));
        QCOMPARE(step.progressFraction(), std::optional(0.25));
        QVERIFY(f.answer(RestoreFixture::packet("new")));
        QCOMPARE(step.phase(), Phase::Restore);
        QVERIFY(step.isWriting() && (step.stateMask() & DRSequenceStep::kStateCancelEnabled) == 0);
        QVERIFY(f.answer({}));
        QCOMPARE(step.phase(), Phase::Verify);
        QVERIFY(f.answer(RestoreFixture::packet("old")));

        QCOMPARE(f.key(), DRMGRestoreKeys::kOutcome);
        const auto& outcome = f.restore->outcome();
        QVERIFY(!outcome.hasFailed() && !f.restore->hasStepGroupFailed(DRMGRestoreGroups::kPutBack));
        QCOMPARE(outcome.rows().size(), std::size_t{2});
        for (const DRMGSummaryRow& row : outcome.rows()) {
            QCOMPARE(row.outcome, u"wizard_restore_row_put_back"_s);
        }
        QVERIFY(QDir(outcome.keptPath()).exists());
        QVERIFY(f.device->tasks[0]->backupInfo().backupName().startsWith(u"Before Restore "));
        QCOMPARE(outcome.remarks(), QStringList{u"wizard_restore_media_stay"_s});
        QVERIFY(kindsOnPhone(f).isEmpty()); // it was moved after the phone backup
        QVERIFY(QDir(f.folder.filePath(u"work/TarvexTransfer"_s)).isEmpty());
        QSignalSpy ended(f.restore.get(), &DRSequence::ended);
        f.restore->pressNext();
        QCOMPARE(ended.at(0).at(0).value<DRSequence::Ending>(), DRSequence::Ending::Completed);
    }

    void failures_data()
    {
        // drive: after the phone backup was checked
        using Drive = std::function<bool(RestoreFixture&)>;
        const DRTestTable<QString, int, Drive> row("body", "wrong", "drive"); // wrong: how many kinds are marked
        const auto no = [](const Failures& failures) { return DRDCTaskResult{.failures = failures, .skipped = {}}; };
        row("not kept", u"wizard_restore_not_kept"_s, 1, [no](RestoreFixture& f) {
            return f.answer("", no({{kNotes, u"no"_s}}));
        });
        row("phone gone", u"wizard_restore_phone_gone"_s, 0, [](RestoreFixture& f) {
            f.device->connected = false;
            return f.answer("");
        });
        row("no space", u"wizard_restore_no_space"_s, 0, [](RestoreFixture& f) {
            f.device->freeBytes = 0;
            return f.answer("small");
        });
        row("one refused", u"wizard_restore_failed"_s, 1, [no](RestoreFixture& f) {
            return f.answer(RestoreFixture::packet("new")) && f.answer({}, no({{kNotes, u"no"_s}})) &&
                   f.answer(RestoreFixture::packet("old"));
        });
        row("other content", u"wizard_restore_failed"_s, 2, [](RestoreFixture& f) {
            return f.answer(RestoreFixture::packet("new")) && f.answer({}) && f.answer(RestoreFixture::packet("odd"));
        });
    }

    void failures()
    {
        QFETCH(const std::function<bool(RestoreFixture&)>, drive);
        QFETCH(const QString, body);
        RestoreFixture f;
        beginIn(f);
        f.queue.runAll();
        QVERIFY(drive(f));
        QCOMPARE(f.key(), DRMGRestoreKeys::kOutcome);
        const auto& outcome = f.restore->outcome();
        QVERIFY(outcome.hasFailed() && f.restore->hasStepGroupFailed(DRMGRestoreGroups::kPutBack));
        QVERIFY2(outcome.bodyHtml().startsWith(body) && outcome.bodyHtml().contains(body + u"_next"_s),
                 qPrintable(outcome.bodyHtml()));
        QTEST(static_cast<int>(std::ranges::count(outcome.rows(), true, &DRMGSummaryRow::isLoss)), "wrong");
        QCOMPARE(kindsOnPhone(f), QStringList{u"notes"_s}); // nothing that holds them is back
        f.restore->pressCancel();                           // Back
        QCOMPARE(f.key(), DRMGRestoreKeys::kChoose);
    }

    void damageIsFoundBeforeAnythingIsWritten()
    {
        RestoreFixture f;
        const QString backup = beginIn(f);
        QFile packet(DRPhoneBackup::pathOfPacket(backup, kNotes));
        QVERIFY(packet.resize(540));
        f.queue.runAll();
        QCOMPARE(f.key(), DRMGRestoreKeys::kOutcome);
        QVERIFY(f.device->tasks.empty());
        QVERIFY(f.restore->outcome().bodyHtml().contains(u"wizard_restore_damaged_next"));
        QVERIFY(f.restore->outcome().rows()[1].isLoss && !f.restore->outcome().rows()[0].isLoss);
        QVERIFY(f.restore->outcome().keptPath().isEmpty());
    }

    void cancelled_data()
    {
        const DRTestTable<bool> row("isChecked");
        row("while it is checked", false);
        row("while the phone is backed up", true);
    }

    void cancelled()
    {
        QFETCH(const bool, isChecked);
        RestoreFixture f;
        beginIn(f);
        if (isChecked) {
            f.queue.runAll();
        }
        QSignalSpy ended(f.restore.get(), &DRSequence::ended);
        f.restore->pressCancel();
        QCOMPARE(ended.size(), 1);
        f.queue.runAll();
        QVERIFY(!isChecked || f.answer(RestoreFixture::packet("new")));
        QCOMPARE(f.device->tasks.size(), isChecked ? std::size_t{1} : std::size_t{0}); // nothing was written
        QCOMPARE(f.key(), QString());
    }

    void ledgerThatCannotBeWritten()
    {
        RestoreFixture f;
        beginIn(f);
        QVERIFY(writeFile(f.context.ledgerPath, "damaged"));
        f.queue.runAll();
        QVERIFY(f.answer(RestoreFixture::packet("new")) && f.answer({}) && f.answer(RestoreFixture::packet("old")));
        QVERIFY(!f.restore->outcome().hasFailed());
        QVERIFY(f.restore->outcome().remarks().contains(u"wizard_restore_forgotten %1"_s.arg(f.context.ledgerPath)));
    }

private:
    /// Presses "Put back" for a phone backup from before the notes were moved; answers its folder.
    static QString beginIn(RestoreFixture& f)
    {
        auto ledger = DRTransferLedger::ofFile(f.context.ledgerPath);
        if (!ledger.record({u"notes"_s}, *f.makeEntry(), f.device->identifier(), f.clock.now())) {
            qFatal("cannot write the ledger of the test");
        }
        QString backup = f.addPhoneBackup(1);
        f.connectPhone();
        f.start();
        f.restore->pressNext();
        return backup;
    }

    static QStringList kindsOnPhone(const RestoreFixture& f)
    {
        return DRTransferLedger::ofFile(f.context.ledgerPath)
            .repeatedKinds({u"notes"_s}, *f.makeEntry(), f.device->identifier());
    }
};

QTEST_GUILESS_MAIN(TestRestore)
#include "TestRestore.moc"
