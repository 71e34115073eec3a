#pragma once

#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"
#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRTimerSource.h"
#include "platform/device/DRDCDeviceTask.h"
#include "wizard/steps/DRMGEntryObservation.h"
#include "wizard/steps/DRMGSequenceStep.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class DRMigrateAndroidBackupEntry;

/// The step that does the migration. As soon as it is shown it runs a chain of phases, each started by the completion
/// of the one before: fetch the phone's packets, load, merge, save, restore, copy media. Each completion first checks
/// `isCancelled`, which leaving the page sets; completions of an earlier run are dropped altogether. Every failure
/// leads to the closing step with its `errorState`. Without a phone at the start the page stays idle. What an earlier
/// run still does in the background is waited for.
///
/// Neither Next nor, while packets are restored and media are copied, Cancel can be pressed; otherwise both are the
/// sequence's own.
class DRMGSequenceStepTransfer final : public DRMGSequenceStep, private DRMigrateBackupEntryDelegate {
    Q_OBJECT

public:
    /// Where the run stands. The values are those of usage logs and of the command line's JSON.
    enum class Phase : quint64 {
        NotStarted = 0,
        BackUp = 1,
        Load = 2,
        Merge = 4,
        Save = 8,
        Restore = 16,
        TransferMedia = 32,
        Done = 16384,
    };
    Q_ENUM(Phase)

    static constexpr int kErrorPhoneGone = 8;
    static constexpr int kErrorBackupOrConversion = 18;
    static constexpr int kErrorRestoreOrCopy = 19;

    explicit DRMGSequenceStepTransfer(const DRMGContext& context);
    ~DRMGSequenceStepTransfer() override;

    void stepWillAppearInDirection(DRSequenceDirection direction) override;
    void stepDidAppearInDirection(DRSequenceDirection direction) override;
    void stepWillDisappear() override;

    [[nodiscard]] Phase progressPhase() const { return m_progressPhase; }
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

    /// The share of the work that is done, 0 to 1, and the seconds still needed, at the last tick.
    [[nodiscard]] double progressFraction() const { return m_progressFraction; }
    [[nodiscard]] double secondsRemaining() const { return m_secondsRemaining; }

    /// What the page shows, as HTML: the note, and the time remaining.
    [[nodiscard]] QString noteHtml() const { return m_noteHtml; }
    [[nodiscard]] QString progressHtml() const { return m_progressHtml; }

    /// What the run does at the moment, for a person, or that it waits for the phone. Plain text; empty before.
    [[nodiscard]] QString phaseText() const;

    /// Whether the page is shown and the phone is not there. Before the first phase the run begins as soon as it is
    /// back; later a lost phone ends it at the next completion. May change with every
    /// `progressChanged`.
    [[nodiscard]] bool isWaitingForPhone() const;

    /// For screen readers: the progress bar and the animation.
    [[nodiscard]] QString progressName() const;
    [[nodiscard]] QString animationName() const;

    /// The phone's entry of this run; null before it is made.
    [[nodiscard]] std::shared_ptr<DRMigrateAndroidBackupEntry> phoneEntry() const;

    /// Empties the working folder, in the background and as soon as nothing of the run is under way there any more. A
    /// next run waits for that.
    void discardWorkingFiles();

    /// Whether the page's animation runs.
    [[nodiscard]] bool isAnimating() const { return m_isAnimating; }

    /// The code of the failure that ended the run, 0 when there was none.
    [[nodiscard]] int errorCode() const { return m_errorCode; }

    /// Why it failed, as far as it is known, for a person to read: packets and files with reasons.
    [[nodiscard]] const QStringList& errorDetails() const { return m_errorDetails; }

    /// The folder of the phone backup made for this run; empty when none was made. (The description under
    /// `DRMGSequence::kBackupInfo` names the folder of the rebuilt packets once these are being restored.)
    [[nodiscard]] QString phoneBackupFolder() const;

    /// What was not moved though the run went on, with reasons: kinds without a reader (under their key), a packet
    /// whose fetching failed and is tolerated, packets that the restore left as they were.
    [[nodiscard]] const std::vector<DRDCPacketProblem>& skippedPackets() const { return m_skippedPackets; }

    /// Whether the working folder is being emptied, or is to be, after `discardWorkingFiles`.
    [[nodiscard]] bool isDiscarding() const { return m_isDiscarding || m_discardTimer; }

    /// "hh:mm" from one hour on, else "mm:ss"; seconds are truncated.
    [[nodiscard]] static QString timeText(double secondsRemaining);

    /// Shows that the run has gone well, as it does a second after its end by itself.
    void gotoNext();

Q_SIGNALS:
    void progressPhaseChanged();

    /// The fraction, the time remaining and its text have changed; about ten times a second.
    void progressChanged();

    /// The packets are rebuilt and about to be restored: the last moment to tell of losses before the phone is written.
    /// Also when there are only media to copy.
    void restoreWillBegin();

    /// The run is over, well or not, and the closing page comes next. Not after a cancelled run.
    void willEnd();

private:
    using ErrorState = DRMGSequenceStepComplete::ErrorState;
    using EntryTest = bool (DRMigrateBackupEntry::*)() const;
    using Continuation = void (DRMGSequenceStepTransfer::*)();

    // Fetching the phone's packets.
    void begin();
    [[nodiscard]] bool isEarlierRunWorking() const;
    void waitForPhone();
    void backupPackets();
    [[nodiscard]] std::shared_ptr<DRMigrateAndroidBackupEntry> makeAndroidEntry(const DRDCDevicePointer& device) const;
    [[nodiscard]] QStringList movableTypes() const;
    void noteUnmovableTypes(const DRMigrateAndroidBackupEntry& entry);
    void addMediaDataTypes(DRMigrateAndroidBackupEntry& entry, const DRDCDevicePointer& device) const;
    void beginProgress(DRMigrateAndroidBackupEntry& entry);
    void fetchPackets(const DRDCDevicePointer& device, const QStringList& packetIDs);
    void backupPacketsDone(const DRDCTaskResult* result, const QString& folder);

    // Loading, merging and saving the phone's data types.
    void dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType) override;
    void dataTypeHasBeenMerged(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType) override;
    void dataTypeHasBeenSaved(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType) override;
    void continueWhenAllAre(EntryTest done, const DRMigrateBackupEntry& entry, Continuation next);
    void loadAllDone();
    void mergeEntries();
    void mergeEntriesDone();
    void saveEntries();
    void saveAllDone();

    // Restoring the rebuilt packets.
    void restorePackets();
    void startRestore(const DRDCDevicePointer& device);
    void restorePacketsDone(const DRDCTaskResult* result);

    // Copying the media.
    void transferMedia();
    void transferCamera();
    void transferCameraDone(const DRDCFileFailures& failures);
    void transferVoiceMemos();
    void transferVoiceMemosDone(const DRDCFileFailures& failures);
    void transferMusic();
    void transferMusicDone(const DRDCFileFailures& failures);
    void transferFilesOf(const QString& key, void (DRMGSequenceStepTransfer::*done)(const DRDCFileFailures&));
    void continueAfterCopy(const DRDCFileFailures& failures, Continuation next);

    // The endings.
    void allDone();
    void gotoBackupErrorWithErrorCode(int code);
    void gotoRestoreErrorWithErrorCode(int code);
    void finish(ErrorState errorState);

    // Progress and events.
    void resetRun();
    void setProgressPhase(Phase phase);
    void updateProgress(double deltaSeconds);
    void observeDeviceEvents();
    void activeDeviceDidFinishEnumeration(const DRNotification& notification);
    void noteDeviceEvent(const DRNotification& notification);
    void deviceTaskDidUpdateTask(const DRNotification& notification);
    void deviceTaskDidFinishBackupPacket(const DRNotification& notification);
    void deviceTaskDidFinishRestorePacket(const DRNotification& notification);
    void markPacket(const DRNotification& notification, qint64 flag);
    void addSkipped(const std::vector<DRDCPacketProblem>& problems);
    void leaveOutFailedPackets(DRMigrateBackupEntry& entry, const DRDCTaskResult& result);
    void addErrorDetails(const std::vector<DRDCPacketProblem>& problems);
    void addErrorDetails(const DRMigrateBackupEntry& entry);

    /// The selected types without those that the person left out at the last moment.
    [[nodiscard]] QStringList typesToMove() const;

    /// A handler for work that outlives the page: it does nothing when this step is gone or another run has begun.
    template <typename Result, typename Action>
    [[nodiscard]] std::function<void(const Result&)> inThisRun(Action action)
    {
        return [step = QPointer<DRMGSequenceStepTransfer>(this), run = m_runNumber, action](const Result& result) {
            const DRMGSequenceStepTransfer* const current = step.data();
            if (current != nullptr && current->m_runNumber == run) {
                action(result);
            }
        };
    }

    Phase m_progressPhase = Phase::NotStarted;
    bool m_isCancelled = false;
    quint64 m_runNumber = 0; ///< counts the runs, so that late completions are told apart
    double m_progressFraction = 0.0;
    double m_secondsRemaining = 0.0;
    QString m_noteHtml;
    QString m_progressHtml;
    bool m_isAnimating = false;
    int m_errorCode = 0;
    QStringList m_errorDetails;
    std::vector<DRDCPacketProblem> m_skippedPackets;

    std::shared_ptr<DRMigrateAndroidBackupEntry> m_formerEntry; ///< of the run before, as long as that may matter
    DRMGEntryObservation m_observation;
    bool m_isDiscarding = false; ///< whether the working folder is being emptied in the background
    std::unique_ptr<DRTimer> m_discardTimer;
    std::unique_ptr<DRTimer> m_startTimer;
    std::unique_ptr<DRTimer> m_progressTimer;
    std::unique_ptr<DRTimer> m_closingTimer;
    std::vector<std::unique_ptr<DRNotificationCenter::Registration>> m_registrations;
};
