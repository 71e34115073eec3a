#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/restore/DRMGRestoreStepOutcome.h"

class DRElidedLabel;
class DRMGSummaryTable;

/// What came of putting the apps back, and what can be done now.
class DRMGRestoreOutcomePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGRestoreOutcomePage(DRMGRestoreStepOutcome& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    DRMGRestoreStepOutcome& m_step;
    DRIconLabel* m_image;
    DRHtmlTextView* m_body;
    QLabel* m_rowsTitle;
    DRMGSummaryTable* m_rows;
    QWidget* m_kept;
    QLabel* m_keptText;
    DRElidedLabel* m_keptPath;
    QLabel* m_remarks;
};
