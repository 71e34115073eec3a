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

    /// A row of the list as it is shown.
    struct Row {
        QString name;      ///< of the device, plain text
        QString date;      ///< when the backup was made, short style
        QString imageName; ///< tells whether the backup can be used
        QString imageText; ///< the same in words
    };

    /// The row of `backupList`; empty for a row outside it.
    [[nodiscard]] Row row(int row) const;

    [[nodiscard]] QString bodyHtml() const;

    /// The link "1" below the list, which carries a tooltip.
    [[nodiscard]] QString notShownHtml() const;
    [[nodiscard]] std::optional<DRMGTooltip> tooltipForLink(const QString& link) const override;

    /// For screen readers: the list and its columns.
    [[nodiscard]] QString listName() const;
    [[nodiscard]] QString nameColumnTitle() const;
    [[nodiscard]] QString dateColumnTitle() const;

    /// The selected row of the list; -1 when none is.
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }

    /// Chooses the backup of the row and enables Next; a row outside the list chooses none and disables it.
    void selectRow(int row);

private:
    [[nodiscard]] bool isInList(int row) const;

    std::vector<DRMigrateIPhoneBackupEntryPointer> m_backupList;
    int m_selectedRow = -1;
};
