#pragma once

#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QTest>

/// The selection of somebody who leaves every box ticked that the fixture has content for.
inline const QStringList kEverything{DRMigrateKeys::kContacts,  DRMigrateKeys::kTextMessages, DRMigrateKeys::kNotes,
                                     DRMigrateKeys::kImages,    DRMigrateKeys::kVideos,       DRMigrateKeys::kMusic,
                                     DRMigrateKeys::kVoiceMemos};

/// A wizard whose phone offers four packets, with the transfer's phases written down.
struct TransferFixture : WizardFixture {
    TransferFixture()
        : WizardFixture(QStringLiteral("{\"IDD_STEPWIZ_TRANSFER_IDC_TIME_REMAINING\":\"about %s left\","
                                       "\"wizard_summary_phone_gone\":\"gone\","
                                       "\"wizard_layout_unreadable\":\"newer\","
                                       "\"wizard_summary_incomplete\":\"incomplete\","
                                       "\"wizard_nothing_moves\":\"nothing moves\"}"))
    {
        using namespace DRMigrateKeys;
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
    [[nodiscard]] const DRMGSequenceStepComplete& closingStep() const
    {
        return *qobject_cast<DRMGSequenceStepComplete*>(sequence->stepForKey(DRMGStepKeys::kComplete));
    }
    [[nodiscard]] int errorState() const { return static_cast<int>(closingStep().errorState()); }

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
        if (lastTask().work() == DRTestDeviceTask::Work::Copy) {
            lastTask().finishCopy();
        } else {
            lastTask().finishPackets();
        }
        return true;
    }

    /// Advances until the phase is entered.
    void advanceTo(DRMGSequenceStepTransfer::Phase phase)
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
        timers.advance(std::chrono::milliseconds(1000));
    }

    QList<qint64> phases;
    int warnings = 0;

private:
    std::size_t m_finishedTasks = 0;
};

/// The result of a task in which these packets failed.
[[nodiscard]] inline DRDCTaskResult failing(const QStringList& packetIDs)
{
    DRDCTaskResult result;
    for (const QString& packetID : packetIDs) {
        result.failures.push_back({.packetID = packetID, .reason = QStringLiteral("broken")});
    }
    return result;
}
