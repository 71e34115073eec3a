#include "tests/support/DRTestTable.h"
#include "tests/wizard/DRTextTables.h"
#include "tests/wizard/TransferFixture.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"
#include "wizard/steps/DRMGSummaryRow.h"

using namespace Qt::StringLiterals;

namespace {

using namespace DRMigrateKeys;
using Answer = DRMGRepeatQuestion::Answer;
using Unmoved = DRTransferPlan::Unmoved;

/// A wizard that remembers its transfers, about to move notes and contacts of a backup of May 2nd.
struct GateFixture : TransferFixture {
    GateFixture()
    {
        context.ledgerPath = folder.filePath(u"ledger/transfers.json"_s);
        sequence = DRMGSequence::sequence(context);
        QObject::connect(sequence.get(), &DRMGSequence::repeatQuestionAsked, sequence.get(), [this] { ++questions; });
        device->freeBytes = quint64{1} << 40U;
        choose({kNotes, kContacts});
        backup()->setLastBackupDate(QDateTime(QDate(2014, 5, 2), QTime(0, 0), Qt::UTC));
        connectPhone();
    }

    [[nodiscard]] DRMigrateIPhoneBackupEntryPointer backup() const
    {
        return sequence->parameters().value<DRMigrateIPhoneBackupEntryPointer>(DRMGSequence::kIPhoneBackupEntry);
    }
    [[nodiscard]] DRTransferLedger ledger() const { return DRTransferLedger::ofFile(context.ledgerPath); }

    /// Enters the kinds as moved from a backup made that day of May.
    void remember(const QStringList& keys, int day)
    {
        const auto entry = makeEntry();
        entry->setLastBackupDate(QDateTime(QDate(2014, 5, day), QTime(0, 0), Qt::UTC));
        QVERIFY(ledger().record(keys, *entry, device->identifier(), clock.now()));
    }
    void damageLedger() const
    {
        QDir().mkpath(folder.filePath(u"ledger"_s));
        QFile file(context.ledgerPath);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{") == 1);
    }
    void route() const { sequence->gotoTransferWithDevice(devices.activeDevice(), 0); }

    int questions = 0;
};

} // namespace

Q_DECLARE_METATYPE(Answer)

/// Repeats: asking before one, remembering what was moved, and telling it at the end.
class TestTransferGate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void questions_data()
    {
        // text: of the question; null when there is none
        const DRTestTable<QStringList, int, QString, bool> row("moved", "day", "text", "canLeaveOut");
        row("never moved", {kCalendar}, 2, {}, false);
        row("part", {kNotes}, 2, u"wizard_repeat_text wizard_kind_notes"_s, true);
        row("all", {kNotes, kContacts}, 2, u"wizard_repeat_text wizard_kind_notes, wizard_kind_contacts"_s, false);
        row("another backup", {kNotes}, 1, u"wizard_repeat_other_backup wizard_kind_notes"_s, true);
        row("unknown", {}, 0, u"wizard_repeat_unknown %1"_s, false);
    }

    void questions()
    {
        QFETCH(const QStringList, moved);
        QFETCH(const int, day);
        QFETCH(const QString, text);
        GateFixture f;
        const QTemporaryDir texts;
        QFile file(texts.filePath(u"en.json"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(DRTextTables::echoing().toUtf8()) > 0);
        file.close();
        f.strings = *DRLocalizedStrings::fromFile(file.fileName());
        if (day == 0) {
            f.damageLedger();
        } else {
            f.remember(moved, day);
        }
        f.route();
        const auto& question = f.sequence->gate().question();
        QCOMPARE(question.has_value(), !text.isNull());
        QCOMPARE(f.questions, question ? 1 : 0);
        QCOMPARE(f.device->tasks.size(), question ? std::size_t{0} : std::size_t{1});
        if (question) {
            QCOMPARE(question->text, QString(text).replace(u"%1"_s, f.sequence->context().ledgerPath));
            QTEST(question->canLeaveOut, "canLeaveOut");
        }
    }

    void pointlessTransfersAreRefused_data()
    {
        const DRTestTable<QStringList, bool, QString> row("keys", "isNewer", "text"); // isNewer: the backup's layout
        row("no app", {kCalendar}, false, u"nothing moves"_s);
        row("newer layout", {kNotes}, true, u"newer"_s);
    }

    void pointlessTransfersAreRefused()
    {
        QFETCH(const QStringList, keys);
        QFETCH(const bool, isNewer);
        QFETCH(const QString, text);
        GateFixture f;
        if (isNewer) {
            f.backup()->setBackupPath(f.folder.path());
            QVERIFY(writeFile(f.folder.filePath(u"Manifest.db"_s), "SQLite"));
        }
        f.sequence->parameters().setValue(DRMGSequence::kSelectedTypes, keys);
        f.sequence->gotoStepForKey(DRMGStepKeys::kConnectPhone);
        QCOMPARE(f.currentKey(), u"selectData"_s);
        QVERIFY(f.device->tasks.empty());
        auto& page = *qobject_cast<DRMGSequenceStepSelectData*>(f.sequence->currentStep());
        QCOMPARE(page.statusText(), text);
        page.setTicked(kNotes, !keys.contains(kNotes));
        QCOMPARE(page.statusText().isEmpty(), !isNewer);
        f.sequence->pressNext();
        f.queue.runAll();
        QCOMPARE(f.currentKey(), isNewer ? u"selectData"_s : u"transfer"_s);
    }

    void phoneThatComesIsAskedAboutOnce()
    {
        GateFixture f;
        f.remember({kNotes}, 2);
        f.devices.setActiveDevice(nullptr);
        f.route();
        QCOMPARE(f.currentKey(), u"connectPhone"_s);
        f.connectPhone();
        f.timers.advance(std::chrono::seconds(5));
        QCOMPARE(f.questions, 1);
    }

    void answersLeadOn_data()
    {
        const DRTestTable<Answer, QString, QStringList> row("answer", "key", "packets");
        row("anyway", Answer::MoveAnyway, u"transfer"_s, {kContactsImportPacket, kPhonebookPacket, kNotesPacket});
        row("left out", Answer::LeaveOut, u"transfer"_s, {kContactsImportPacket, kPhonebookPacket});
        row("stop", Answer::Stop, u"selectData"_s, {});
    }

    void answersLeadOn()
    {
        QFETCH(const Answer, answer);
        GateFixture f;
        f.remember({kNotes}, 2);
        f.sequence->gotoStepForKey(DRMGStepKeys::kMemoryWarning);
        f.sequence->pressNext();
        QCOMPARE(f.currentKey(), u"memoryWarning"_s);
        f.sequence->answerRepeatQuestion(answer);
        QTEST(f.currentKey(), "key");
        QVERIFY(!f.sequence->gate().question());
        auto packets = f.sequence->parameters().value<QStringList>(DRMGSequence::kAndroidBackupPackets);
        packets.sort();
        QTEST(packets, "packets");
    }

    void answerCountsForItsQuestionOnly()
    {
        GateFixture f;
        f.remember({kNotes}, 2);
        f.route();
        f.remember({kContacts}, 2);
        f.sequence->answerRepeatQuestion(Answer::MoveAnyway);
        QVERIFY2(f.device->tasks.empty() && f.questions == 2, "the question has changed");
        f.sequence->answerRepeatQuestion(Answer::MoveAnyway);
        QCOMPARE(f.currentKey(), u"transfer"_s);
        f.route();
        QVERIFY2(f.questions == 3, "an answer counts once");
    }

    void transfersAreRemembered()
    {
        GateFixture f;
        f.route();
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Save);
        QVERIFY(f.ledger().repeatedKinds({kNotes}, *f.backup(), f.device->identifier()).isEmpty());
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Restore);
        QVERIFY2(!f.ledger().repeatedKinds({kNotes}, *f.backup(), f.device->identifier()).isEmpty(),
                 "before the phone is written");
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.ledger().repeatedKinds({kNotes, kContacts}, *f.backup(), f.device->identifier()).size(), 2);
        QVERIFY(!f.sequence->gate().hasForgotten());
    }

    void successWithLossesSaysSo()
    {
        GateFixture f;
        f.route();
        f.runToItsEnd();
        QCOMPARE(f.closingStep().remarks(), QStringList());
        for (const QString& what : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
            f.script.losses[kNotes].push_back({what, u"torn"_s});
        }
        f.choose({kNotes});
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        f.runToItsEnd();
        QCOMPARE(f.errorState(), 0);
        QCOMPARE(f.closingStep().remarks(),
                 (QStringList{u"incomplete"_s, u"a: torn"_s, u"b: torn"_s, u"c: torn"_s, u"d: torn"_s}));
    }

    void whatDidNotReachThePhoneIsForgotten()
    {
        GateFixture f;
        f.route();
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Restore);
        f.lastTask().finishPackets(failing({kNotesPacket}));
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.ledger().repeatedKinds({kNotes, kContacts}, *f.backup(), f.device->identifier()),
                 QStringList{kContacts});
    }

    void whatMayHaveReachedAPhoneThatWentAwayIsRemembered()
    {
        GateFixture f;
        f.route();
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Restore);
        f.devices.setActiveDevice(nullptr);
        f.lastTask().finishPackets(failing({kContactsImportPacket, kPhonebookPacket, kNotesPacket}));
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(f.ledger().repeatedKinds({kNotes, kContacts}, *f.backup(), f.device->identifier()).size(), 2);
    }

    /// Files are never doubled, so a copy that broke off must not keep the rest from being moved.
    void filesAreRememberedWhenTheyAreThere()
    {
        GateFixture f;
        f.choose({kNotes, kImages});
        f.backup()->setLastBackupDate(QDateTime(QDate(2014, 5, 2), QTime(0, 0), Qt::UTC));
        f.route();
        f.advanceTo(DRMGSequenceStepTransfer::Phase::Restore);
        const auto repeated = [&f] {
            return f.ledger().repeatedKinds({kNotes, kImages}, *f.backup(), f.device->identifier());
        };
        QCOMPARE(repeated(), QStringList{kNotes});
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(repeated(), (QStringList{kNotes, kImages}));
    }

    void withoutLedgerNothingIsAskedOrWritten()
    {
        GateFixture f;
        f.remember({kNotes}, 2);
        QFile::rename(f.context.ledgerPath, f.folder.filePath(u"kept"_s));
        f.context.ledgerPath.clear();
        f.sequence = DRMGSequence::sequence(f.context);
        f.choose({kNotes});
        f.route();
        f.runToItsEnd();
        QCOMPARE(f.currentKey(), u"complete"_s);
        QCOMPARE(QDir(f.folder.filePath(u"ledger"_s)).entryList(QDir::Files), QStringList());
    }

    void runBeginsWhenThePhoneIsBack()
    {
        GateFixture f;
        f.devices.setActiveDevice(nullptr);
        f.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        QVERIFY(f.step().isWaitingForPhone());
        f.connectPhone();
        QVERIFY(!f.step().isWaitingForPhone());
        QCOMPARE(f.step().progressPhase(), DRMGSequenceStepTransfer::Phase::BackUp);
        f.device->connected = false;
        QVERIFY(f.step().isWaitingForPhone());

        GateFixture unannounced;
        unannounced.device->connected = false;
        unannounced.sequence->gotoStepForKey(DRMGStepKeys::kTransfer);
        unannounced.timers.advance(std::chrono::seconds(1));
        QVERIFY(unannounced.step().isWaitingForPhone());
        unannounced.device->connected = true;
        unannounced.timers.advance(std::chrono::seconds(1));
        QCOMPARE(unannounced.step().progressPhase(), DRMGSequenceStepTransfer::Phase::BackUp);
    }

    void summaryRows()
    {
        constexpr qint64 kDelivered = 0x10;
        using Kind = DRTransferSummary::Kind;
        DRTransferSummary summary;
        summary.kinds[kContactsImportPacket] = Kind{.flags = 1,
                                                    .sourceKey = kContacts,
                                                    .records = {3, 0},
                                                    .furtherCounts = {{u"calls"_s, {7, 0}}},
                                                    .skipped = {}};
        summary.kinds[kPhonebookPacket] = Kind{.flags = kDelivered,
                                               .sourceKey = kContacts,
                                               .records = {3, 2},
                                               .furtherCounts = {{u"calls"_s, {7, 7}}, {u"new"_s, {1, 1}}},
                                               .skipped = {{u"An\nn"_s, u"no name"_s}}};
        summary.kinds[kImages] =
            Kind{.flags = kDelivered, .sourceKey = kImages, .records = {9, 5}, .furtherCounts = {}};
        for (const QString& name : {u"1%2"_s, u"2"_s, u"3"_s, u"1%2"_s, u"4"_s, u"5"_s}) {
            summary.kinds[kImages].skipped.push_back({name, name == u"5" ? u"torn"_s : u"gone"_s});
        }
        summary.kinds[kNotesPacket] = Kind{.flags = 0, .sourceKey = kNotes, .records = {}, .isUnwritten = true};
        summary.kinds[kMusic].unmoved = Unmoved{kMusic, Unmoved::Weight::Note, Unmoved::Reason::NotInBackup, {}};
        summary.kinds[kCalendar].unmoved = Unmoved{kCalendar, Unmoved::Weight::Skipped, Unmoved::Reason::NoApp, {}};
        summary.kinds[kTelephonyPacket].skipped = {{kTelephonyPacket, u"broken"_s}};
        DRTransferPlan plan;
        plan.kinds = {{.key = kImages}, {.key = kVideos}};

        const auto strings = DRLocalizedStrings::fromFolder(DRTextTables::folder(), {});
        QStringList lines;
        for (const DRMGSummaryRow& row : DRMGSummaryRow::rowsOf(summary, plan, *strings)) {
            lines << QStringList{row.name, row.outcome, row.counts.join(u"; "_s), row.losses.join(u"; "_s),
                                 row.isLoss ? u"lost"_s : u"-"_s}
                         .join(u" | "_s);
        }
        QCOMPARE(lines, (QStringList{
                            u"Contacts and calls | Moved: 2 of 3 | Calls: 7 of 7; new: 1 / 1 | An?n: no name | lost"_s,
                            u"Conversations | Moved: 0 of 0 |  | com.android.providers.telephony: broken | lost"_s,
                            u"Calendar events | The phone has no app for it |  |  | lost"_s,
                            u"Notes | Moved: 0 of 0 |  | It was not written to the phone | lost"_s,
                            u"Photos, Videos | Moved: 5 of 9 |  | 1%2, 2, 3 and 1 more: gone; 5: torn | lost"_s,
                            u"Music | Not in this backup |  |  | -"_s,
                        }));
        const auto rows = DRMGSummaryRow::rowsOf(summary, plan, *strings);
        QCOMPARE(rows[4].allLosses,
                 (QStringList{u"1%2: gone"_s, u"2: gone"_s, u"3: gone"_s, u"4: gone"_s, u"5: torn"_s}));
        QVERIFY2(rows[0].allLosses.isEmpty(), "nothing is left out");
    }
};

QTEST_GUILESS_MAIN(TestTransferGate)
#include "TestTransferGate.moc"
