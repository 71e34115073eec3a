#pragma once

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "platform/sequence/DRSequence.h"
#include "wizard/DRMGContext.h"
#include "wizard/steps/DRMGSequenceStepNewBackupNeeded.h"

#include <QMap>

#include <memory>
#include <vector>

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

    /// Makes the sequence with all its steps; the caller owns it. What `context` refers to outlives it.
    [[nodiscard]] static std::unique_ptr<DRMGSequence> sequence(const DRMGContext& context);

    /// The step under the key; null when it is unknown.
    [[nodiscard]] DRSequenceStep* stepForKey(const QString& key) const;

    /// Shows the step under the key. False, with nothing done, when it is unknown.
    bool gotoStepForKey(const QString& key);

    /// The step group's title; a null text for groups other than 0 to 3.
    [[nodiscard]] QString localizedStringForSequenceStepType(qint32 identifier) const;

    /// The newest usable backups of the default folder, scanned now.
    [[nodiscard]] std::vector<DRMigrateIPhoneBackupEntryPointer> latestBackupList() const;

    /// Routes forward from the choice of a backup: to the incompatible-phone, new-backup-needed, backup-list or
    /// select-data step. False when the wanted step is not registered.
    bool gotoNextIPhoneStepWithDevice(const DRDCDevicePointer& device,
                                      const std::vector<DRMigrateIPhoneBackupEntryPointer>& backupList);

    /// Routes backward: to the welcome step, or to the backup list when there are two or more backups. Always true.
    bool gotoPreviousIPhoneStep();

    /// Routes towards the transfer: to the connect-phone, incompatible-phone, transfer or memory-warning step. Always
    /// true.
    bool gotoTransferWithDevice(const DRDCDevicePointer& device, quint64 bytesNeeded);

    void updateUI() override;

    [[nodiscard]] const DRMGContext& context() const { return m_context; }

protected:
    void cancelToAnalytics() override;
    void completeToAnalytics() override;
    [[nodiscard]] QStringList analyticsPageViewComponentsForComponents(const QStringList& components) const override;

private:
    explicit DRMGSequence(const DRMGContext& context);
    bool gotoNewBackupNeeded(DRMGSequenceStepNewBackupNeeded::Reason reason);

    struct RegisteredStep {
        DRSequenceStep* step = nullptr;
        int group = -1;
    };

    DRMGContext m_context;
    QMap<QString, RegisteredStep> m_stepLookup;
};
