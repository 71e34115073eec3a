#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/restore/DRMGRestoreStepChoose.h"

class QPushButton;
class DRRowTable;

/// The list of phone backups, one of which can be selected, and what putting it back would do.
class DRMGRestoreChoosePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGRestoreChoosePage(DRMGRestoreStepChoose& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void setUpTable();
    void fillTable();
    void showSelection();
    void selectionChanged();

    DRMGRestoreStepChoose& m_step;
    DRHtmlTextView* m_body;
    DRRowTable* m_table;
    QLabel* m_status;
    QLabel* m_plan;
    QPushButton* m_choosePhone;
    std::vector<DRMGRestoreStepChoose::Row> m_shownRows;
};
