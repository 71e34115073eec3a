#pragma once

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "platform/sequence/DRSequence.h"
#include "wizard/DRMGContext.h"
#include "wizard/DRMGTransferGate.h"
#include "wizard/DRTransferSummary.h"
#include "wizard/steps/DRMGSequenceStepNewBackupNeeded.h"

#include <QMap>
#include <QUrl>

#include <memory>
#include <vector>

class DRMGSequenceStepTransfer;

/// The migration as a sequence of nine steps in four groups, and the rules that decide which step follows which. See
/// docs/architecture.md for the graph.
class DRMGSequence final : public DRSequence {
    Q_OBJECT

public:
    /// Keys of the shared dictionary, each with the type of its value.
    static const QString kIPhoneBackupEntry;    ///< DRMigrateIPhoneBackupEntryPointer: the chosen iPhone backup
    static const QString kSelectedTypes;        ///< QStringList: the data-type keys to move
    static const QString kAndroidBackupEntry;   ///< std::shared_ptr<DRMigrateAndroidBackupEntry>: the phone's entry
    static const QString kAndroidBackupPackets; ///< QStringList: packet IDs to back up and restore
    static const QString kBackupName;           ///< QString: the name of the phone backup
    static const QString kBackupInfo;           ///< std::shared_ptr<DRBRBackupInfo>: its description

    /// Of phones whose system can receive content in this way.
    static constexpr quint32 kOldestAndroidBaseVersion = 2;

    /// Makes the sequence with all its steps; the caller owns it. What `context` refers to outlives it.
    [[nodiscard]] static std::unique_ptr<DRMGSequence> sequence(const DRMGContext& context);

    /// The step under the key; null when it is unknown.
    [[nodiscard]] DRSequenceStep* stepForKey(const QString& key) const;

    /// Shows the step under the key. False, with nothing done, when it is unknown.
    bool gotoStepForKey(const QString& key);

    /// The step group's title; a null text for groups other than 0 to 3.
    [[nodiscard]] QString localizedStringForSequenceStepType(qint32 identifier) const;

    /// The transfer's has once the transfer ended with an error.
    [[nodiscard]] bool hasStepGroupFailed(int identifier) const override;

    /// Looks for iPhone backups in this folder from now on.
    void setBackupsFolder(const QString& folder) { m_context.backupsFolder = folder; }

    /// The newest usable backups of the backups folder, scanned now.
    [[nodiscard]] std::vector<DRMigrateIPhoneBackupEntryPointer> latestBackupList() const;

    /// Routes forward from the choice of a backup: to the incompatible-phone, new-backup-needed, backup-list or
    /// select-data step. False when the wanted step is not registered.
    bool gotoNextIPhoneStepWithDevice(const DRDCDevicePointer& device,
                                      const std::vector<DRMigrateIPhoneBackupEntryPointer>& backupList);

    /// Routes backward: to the welcome step, or to the backup list when there are two or more backups. Always true.
    bool gotoPreviousIPhoneStep();

    /// Routes towards the transfer: to the connect-phone, incompatible-phone, transfer or memory-warning step. Always
    /// true. Where a ledger tells that the transfer would double something it stays where it is and asks first.
    bool gotoTransferWithDevice(const DRDCDevicePointer& device, quint64 bytesNeeded);

    /// What stands before the transfer: the question that waits for an answer, if any, and what is left out of it.
    [[nodiscard]] const DRMGTransferGate& gate() const { return *m_gate; }

    /// Answers the question of the gate and goes on accordingly.
    void answerRepeatQuestion(DRMGRepeatQuestion::Answer answer);

    /// How the last transfer ended, and what became of everything it was to move; empty before.
    [[nodiscard]] DRTransferResult transferResult() const;
    [[nodiscard]] DRTransferSummary transferSummary() const;

    void updateUI() override;

    /// What the steps work with; holds as long as the sequence.
    [[nodiscard]] const DRMGContext& context() const { return m_context; }

Q_SIGNALS:
    /// `gate().question()` waits for an answer; also again when it has changed meanwhile.
    void repeatQuestionAsked();

    /// What the program around the wizard is to do. The first two come after the sequence has ended: whoever destroys it
    /// then does so later.
    void restoreSelected();       ///< show the phone's backups, to put one back
    void contactsSetupSelected(); ///< offer another way for the contacts
    void openUrlRequested(const QUrl& address);

protected:
    void cancelToAnalytics() override;
    void completeToAnalytics() override;
    [[nodiscard]] QStringList analyticsPageViewComponentsForComponents(const QStringList& components) const override;

private:
    explicit DRMGSequence(const DRMGContext& context);
    [[nodiscard]] DRMGSequenceStepTransfer* transferStep() const;
    [[nodiscard]] QString phoneBackupPath() const;
    void gotoTransferThroughGate(const DRDCDevicePointer& device);
    void refuseTransfer();
    bool gotoNewBackupNeeded(DRMGSequenceStepNewBackupNeeded::Reason reason);

    struct RegisteredStep {
        DRSequenceStep* step = nullptr;
        int group = -1;
    };

    DRMGContext m_context;
    QMap<QString, RegisteredStep> m_stepLookup;
    std::unique_ptr<DRMGTransferGate> m_gate;
};
