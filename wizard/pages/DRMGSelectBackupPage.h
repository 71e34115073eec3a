#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepSelectBackup.h"

class DRRowTable;

/// The list of backups, one of which can be selected.
class DRMGSelectBackupPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGSelectBackupPage(DRMGSequenceStepSelectBackup& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void setUpTable();
    void fillTable();
    void selectionChanged();

    DRMGSequenceStepSelectBackup& m_step;
    DRHtmlTextView* m_body;
    DRRowTable* m_table;
    DRHtmlTextView* m_notShown;
    std::vector<DRMigrateIPhoneBackupEntryPointer> m_shownBackups;
};
