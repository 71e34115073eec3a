#pragma once

#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"
#include "wizard/DRMGTransferGate.h"
#include "wizard/steps/DRMGEntryObservation.h"
#include "wizard/steps/DRMGSelectionBox.h"
#include "wizard/steps/DRMGSequenceStep.h"

/// The page that offers the kinds of content, with counts that fill in as the iPhone backup's data types finish
/// loading. Next routes towards the transfer, but waits for what is still loading: sizes and lists of files would be
/// incomplete. Cancel, labelled Back, routes backward. The selection is kept whenever a box changes and when the page is
/// left.
class DRMGSequenceStepSelectData final : public DRMGSequenceStep, private DRMigrateBackupEntryDelegate {
    Q_OBJECT

public:
    explicit DRMGSequenceStepSelectData(const DRMGContext& context);

    /// Makes the boxes and starts loading every data type of the backup.
    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// Enables Next, also with nothing ticked, until a box changes.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;
    void stepWillDisappear() override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;
    [[nodiscard]] bool sequenceShouldCancel() override;

    /// One box per category, in display order. All are ticked before the first selection.
    [[nodiscard]] const DRMGSelectionBoxes& boxes() const { return m_boxes; }
    using DRMGSequenceStep::boxLabel;
    using DRMGSequenceStep::boxStateText;

    /// Whether Next was pressed and the page goes on by itself as soon as everything is loaded. Next is disabled then.
    [[nodiscard]] bool isWaitingForContent() const { return m_isWaitingForContent; }

    /// Why Next was pressed and the page is still there, or that nothing of this backup can be read; empty otherwise.
    /// Plain text.
    [[nodiscard]] QString statusText() const;

    /// Says why the transfer does not begin, until something is changed.
    void refuse(DRMGTransferGate::Refusal why);

    [[nodiscard]] QString bodyHtml() const;

    /// When the backup was made; coloured, with the link "oldbackup", when that is more than 30 days ago.
    [[nodiscard]] QString backupInfoHtml() const;
    [[nodiscard]] std::optional<DRMGTooltip> tooltipForLink(const QString& link) const override;

    /// The iPhone's name, plain text, and its picture.
    [[nodiscard]] QString deviceName() const;
    [[nodiscard]] QString imageName() const;
    [[nodiscard]] QString imageText() const;

    /// Ticks or clears a box. Next is enabled while any is ticked.
    void setTicked(const QString& key, bool ticked);

private:
    void dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType) override;
    void updateWithEntry(const DRMigrateBackupEntry& entry);
    void updateContent(const DRMigrateBackupEntry& entry);
    [[nodiscard]] bool isLoading() const;
    void updateStateMask();
    void saveSelections();

    DRMGSelectionBoxes m_boxes;
    DRMGTransferGate::Refusal m_refusal = DRMGTransferGate::Refusal::None;
    bool m_isWaitingForContent = false;
    DRMGEntryObservation m_observation;
};
