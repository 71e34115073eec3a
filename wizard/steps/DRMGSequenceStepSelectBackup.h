#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

#include <vector>

/// The page that lists the backups when there are several iPhones. Next routes forward with the selected one; Cancel,
/// labelled Back, returns to the welcome page.
class DRMGSequenceStepSelectBackup final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepSelectBackup(const DRMGContext& context);

    /// Scans the backups anew, with none selected.
    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// Sends the several-iPhones event.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    /// Does nothing while no backup has ever been chosen.
    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;
    [[nodiscard]] bool sequenceShouldCancel() override;

    /// The newest backup of each iPhone, the newest first.
    [[nodiscard]] const std::vector<DRMigrateIPhoneBackupEntryPointer>& backupList() const { return m_backupList; }

    /// The selected row of the list; -1 when none is.
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }

    /// Chooses the backup of the row and enables Next; a row outside the list chooses none and disables it.
    void selectRow(int row);

private:
    std::vector<DRMigrateIPhoneBackupEntryPointer> m_backupList;
    int m_selectedRow = -1;
};
