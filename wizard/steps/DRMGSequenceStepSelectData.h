#pragma once

#include "model/backup_entry/DRMigrateBackupEntryDelegate.h"
#include "wizard/steps/DRMGEntryObservation.h"
#include "wizard/steps/DRMGSelectionBox.h"
#include "wizard/steps/DRMGSequenceStep.h"

/// The page that offers the kinds of content, with counts that fill in as the iPhone backup's data types finish
/// loading. Next routes towards the transfer; Cancel, labelled Back, routes backward. The selection is kept whenever a
/// box changes and when the page is left.
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

    /// Ticks or clears a box. Next is enabled while any is ticked.
    void setTicked(const QString& key, bool ticked);

private:
    void dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType) override;
    void updateWithEntry(const DRMigrateBackupEntry& entry);
    void updateCount(const DRMigrateBackupEntry& entry, const QString& key);
    void saveSelections();

    DRMGSelectionBoxes m_boxes;
    DRMGEntryObservation m_observation;
};
