#include "tests/support/DRTestTable.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"
#include "wizard/steps/DRMGSequenceStepNewBackupNeeded.h"
#include "wizard/steps/DRMGSequenceStepSelectBackup.h"

using namespace Qt::StringLiterals;

namespace {

enum class Phone { None, NotReady, AndroidOne, AndroidTwo };

void bring(WizardFixture& f, Phone phone)
{
    f.device->stateFlags = phone == Phone::NotReady ? 0 : DRDCDevice::kStateFlagReady;
    f.device->baseVersion = phone == Phone::AndroidTwo ? 2 : 1;
    if (phone != Phone::None) {
        f.connectPhone();
    }
}

template <typename Step> Step& step(const WizardFixture& f, const QString& key)
{
    return *qobject_cast<Step*>(f.sequence->stepForKey(key));
}

} // namespace

Q_DECLARE_METATYPE(Phone)

class TestRouting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void forward_data()
    {
        // versions: of the backups; "enc" before one that is encrypted
        const DRTestTable<Phone, QStringList, QString, int> row("phone", "versions", "key", "reason");
        const QStringList usable{u"4.0"_s};
        row("no phone, usable", Phone::None, usable, u"selectData"_s, 0);
        row("phone not ready, usable", Phone::NotReady, usable, u"selectData"_s, 0);
        row("old phone, usable", Phone::AndroidOne, usable, u"phoneIncompatible"_s, 0);
        row("old phone, none", Phone::AndroidOne, {}, u"phoneIncompatible"_s, 0);
        row("phone of version 2", Phone::AndroidTwo, usable, u"selectData"_s, 0);
        row("none", Phone::None, {}, u"newBackupNeeded"_s, 1);
        row("encrypted", Phone::None, {u"enc6.0"_s}, u"newBackupNeeded"_s, 2);
        row("encrypted and too old", Phone::None, {u"enc3.1"_s}, u"newBackupNeeded"_s, 2);
        row("too old", Phone::None, {u"3.1.3"_s}, u"newBackupNeeded"_s, 3);
        row("no version", Phone::None, {QString()}, u"newBackupNeeded"_s, 3);
        row("two, one too old", Phone::None, {u"3.0"_s, u"6.0"_s}, u"selectBackup"_s, 0);
    }

    void forward()
    {
        QFETCH(const Phone, phone);
        QFETCH(const QStringList, versions);
        QFETCH(const int, reason);
        WizardFixture f;
        bring(f, phone);
        std::vector<DRMigrateIPhoneBackupEntryPointer> backups;
        for (const QString& version : versions) {
            backups.push_back(f.makeEntry(QString(version).remove(u"enc"_s), version.startsWith(u"enc"_s)));
        }
        QVERIFY(f.sequence->gotoNextIPhoneStepWithDevice(f.devices.activeDevice(), backups));
        QTEST(f.currentKey(), "key");
        const auto& needed = step<DRMGSequenceStepNewBackupNeeded>(f, DRMGStepKeys::kNewBackupNeeded);
        QCOMPARE(static_cast<int>(needed.backupNeededReason()), reason);
        const QStringList errors = f.analytics.takeEvents().filter(u"Sequence error"_s);
        if (reason != 0) {
            QCOMPARE(errors, QStringList{u"Migrate|Sequence error|Error: %1"_s.arg(reason + 1)});
        }
        QCOMPARE(f.sequence->parameters().contains(DRMGSequence::kIPhoneBackupEntry),
                 f.currentKey() == u"selectData"_s);
    }

    void towardsTheTransfer_data()
    {
        const DRTestTable<Phone, quint64, QString> row("phone", "freeBytes", "key");
        constexpr quint64 kHuge = 0x8000000000000000;
        row("no phone", Phone::None, kHuge, u"connectPhone"_s);
        row("phone not ready", Phone::NotReady, kHuge, u"connectPhone"_s);
        row("old phone", Phone::AndroidOne, kHuge, u"phoneIncompatible"_s);
        row("exactly enough", Phone::AndroidTwo, 3145728, u"transfer"_s);
        row("one byte less", Phone::AndroidTwo, 3145727, u"memoryWarning"_s);
        row("compared without sign", Phone::AndroidTwo, kHuge, u"transfer"_s);
    }

    void towardsTheTransfer()
    {
        QFETCH(const Phone, phone);
        QFETCH(const quint64, freeBytes);
        WizardFixture f;
        f.device->packets = {DRMigrateKeys::kNotesPacket};
        f.choose({DRMigrateKeys::kNotes});
        bring(f, phone);
        f.device->freeBytes = freeBytes;
        QVERIFY(f.sequence->gotoTransferWithDevice(f.devices.activeDevice(), quint64{3} * 1048576));
        QTEST(f.currentKey(), "key");
    }

    void groupsAndHeadings()
    {
        WizardFixture f(uR"({"IDS_STEPWIZ_WELCOME":"Hello","IDS_STEPWIZ_FINISH":"Bye","IDD_STUDIO_IDC_HEADER":"Head",
        "IDD_STEPWIZ_FINISH_IDC_HEADER":"Done","IDD_STEPWIZ_FINISH_FAILED_IDC_HEADER":"Failed",
        "IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_HEADER":"Locked"})"_s);
        QStringList groups;
        for (const auto& group : f.sequence->stepGroups()) {
            QStringList keys;
            for (const auto& one : group.steps) {
                keys.append(one->key());
            }
            groups.append(u"%1 %2: %3"_s.arg(group.identifier).arg(group.title, keys.join(u' ')));
        }
        QCOMPARE(
            groups,
            (QStringList{u"0 Hello: welcome"_s,
                         u"1 : selectBackup selectData newBackupNeeded connectPhone memoryWarning phoneIncompatible"_s,
                         u"2 : transfer"_s, u"3 Bye: complete"_s}));
        QVERIFY(f.sequence->localizedStringForSequenceStepType(4).isNull());
        QCOMPARE(f.sequence->stepForKey(u"unknown"_s), nullptr);

        auto& complete = step<DRMGSequenceStepComplete>(f, DRMGStepKeys::kComplete);
        auto& needed = step<DRMGSequenceStepNewBackupNeeded>(f, DRMGStepKeys::kNewBackupNeeded);
        QCOMPARE(complete.localizedTitle(), u"Done"_s);
        complete.setErrorState(DRMGSequenceStepComplete::ErrorState::RestoreFailed);
        QCOMPARE(complete.localizedTitle(), u"Failed"_s);
        QCOMPARE(needed.localizedTitle(), QString());
        needed.setBackupNeededReason(DRMGSequenceStepNewBackupNeeded::Reason::Encrypted);
        QCOMPARE(needed.localizedTitle(), u"Locked"_s);
    }

    void oneBackupLeadsStraightToTheDataAndBackToWelcome()
    {
        WizardFixture f;
        f.addBackup(u"one"_s);
        f.sequence->start();
        QCOMPARE(f.sequence->resolvedLocalizationKey(u"dr_sequence_button_cancel"_s), u"IDD_STEPWIZ_SHEET_IDCANCEL"_s);
        QCOMPARE(f.sequence->resolvedLocalizationKey(u"dr_sequence_button_next"_s), u"IDD_STEPWIZ_SHEET_IDC_NEXT"_s);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"selectData"_s);
        QCOMPARE(f.sequence->resolvedLocalizationKey(u"dr_sequence_button_cancel"_s), u"IDD_STEPWIZ_SHEET_IDC_BACK"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"welcome"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), QString());
        QCOMPARE(
            f.analytics.takeEvents(),
            (QStringList{u"page:migrate/welcome"_s, u"Migrate|Sequence started|"_s, u"page:migrate/select-data"_s,
                         u"page:migrate/welcome"_s, u"Migrate|Sequence started|"_s, u"Migrate|Sequence cancelled|"_s}));
    }

    void severalBackupsAreListed()
    {
        WizardFixture f;
        f.addBackup(u"one"_s);
        f.addBackup(u"two"_s, u"3.0"_s);
        f.sequence->start();
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"selectBackup"_s);
        QVERIFY(f.analytics.takeEvents().contains(u"Migrate|Several iPhones displayed|"_s));
        auto& list = step<DRMGSequenceStepSelectBackup>(f, DRMGStepKeys::kSelectBackup);
        QCOMPARE(list.backupList().size(), std::size_t{2});
        QCOMPARE(list.stateMask(), 5);
        f.sequence->next();
        QCOMPARE(f.currentKey(), u"selectBackup"_s);
        list.selectRow(2);
        QCOMPARE(list.stateMask(), 5);

        list.selectRow(0);
        QCOMPARE(list.stateMask(), 7);
        f.sequence->pressNext();
        QVERIFY2(f.currentKey() == u"newBackupNeeded"_s, "the newest comes first and is too old");
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"selectBackup"_s);
        QCOMPARE(list.selectedRow(), -1);
        list.selectRow(1);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"selectData"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"selectBackup"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"welcome"_s);
    }

    void aBackupMadeMeanwhileIsFound()
    {
        WizardFixture f;
        f.sequence->start();
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"newBackupNeeded"_s);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"newBackupNeeded"_s);
        f.addBackup(u"one"_s);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"selectData"_s);
    }

    void connectPhoneMovesOnWhenThePhoneIsReady_data()
    {
        const DRTestTable<bool> row("isAnnounced");
        row("a phone that is new", true);
        row("a phone that comes back", false);
    }

    void connectPhoneMovesOnWhenThePhoneIsReady()
    {
        QFETCH(const bool, isAnnounced);
        WizardFixture f;
        f.device->packets = {DRMigrateKeys::kNotesPacket};
        f.choose({DRMigrateKeys::kNotes});
        f.device->stateFlags = 0;
        f.sequence->gotoTransferWithDevice(nullptr, 0);
        QCOMPARE(f.sequence->currentStep()->stateMask(), 1);
        f.connectPhone();
        f.timers.advance(std::chrono::seconds(5));
        QCOMPARE(f.currentKey(), u"connectPhone"_s);
        f.device->stateFlags = DRDCDevice::kStateFlagReady;
        if (isAnnounced) {
            f.connectPhone();
        }
        f.timers.advance(std::chrono::seconds(1));
        QVERIFY2(f.currentKey() == u"memoryWarning"_s, "1 MiB of notes does not fit into 0 bytes");
        QVERIFY(f.analytics.takeEvents().contains(u"Migrate|Sequence error|Error: 1"_s));
        f.sequence->pressCancel();
        f.sequence->pressNext();
        f.queue.runAll();
        QCOMPARE(f.currentKey(), u"memoryWarning"_s);
        QVERIFY2(f.analytics.takeEvents().contains(u"Migrate|Sequence error|Error: 1"_s), "on every visit");
        f.device->freeBytes = 1048576;
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"transfer"_s);
    }

    void connectPhoneIgnoresThePhoneOnceLeft()
    {
        WizardFixture f;
        f.sequence->gotoStepForKey(DRMGStepKeys::kConnectPhone);
        f.sequence->gotoStepForKey(DRMGStepKeys::kWelcome);
        f.connectPhone();
        QCOMPARE(f.currentKey(), u"welcome"_s);
        f.sequence->gotoStepForKey(DRMGStepKeys::kConnectPhone);
        QVERIFY2(f.currentKey() != u"connectPhone"_s, "with a phone that is ready the page moves on at once");
    }

    void incompatiblePhoneCanOnlyCancel()
    {
        WizardFixture f;
        f.sequence->gotoStepForKey(DRMGStepKeys::kPhoneIncompatible);
        QVERIFY(f.analytics.takeEvents().contains(u"Migrate|Sequence error|Error: 5"_s));
        QCOMPARE(f.sequence->currentStep()->stateMask(), 5);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"phoneIncompatible"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), QString());
    }

    void closingPage_data()
    {
        const DRTestTable<int, QStringList> row("errorState", "errors");
        row("success", 0, {});
        row("backup failed", 1, {u"Migrate|Sequence error|Error: 6"_s});
        row("restore failed", 2, {u"Migrate|Sequence error|Error: 7"_s});
    }

    void closingPage()
    {
        QFETCH(const int, errorState);
        WizardFixture f;
        auto& complete = step<DRMGSequenceStepComplete>(f, DRMGStepKeys::kComplete);
        complete.setErrorState(static_cast<DRMGSequenceStepComplete::ErrorState>(errorState));
        f.sequence->gotoStepForKey(DRMGStepKeys::kComplete);
        QTEST(f.analytics.takeEvents().filter(u"error"_s), "errors");
        QCOMPARE(complete.stateMask(), 22);
        QCOMPARE(f.sequence->resolvedLocalizationKey(u"dr_sequence_button_next"_s), u"dr_sequence_button_done"_s);
        QCOMPARE(f.sequence->nextKeyEquivalent(), u"\r"_s);
        f.sequence->pressCancel();
        QCOMPARE(f.currentKey(), u"complete"_s);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), QString());
        QCOMPARE(f.analytics.takeEvents(), QStringList{u"Migrate|Sequence completed|"_s});
    }
};

QTEST_GUILESS_MAIN(TestRouting)
#include "TestRouting.moc"
