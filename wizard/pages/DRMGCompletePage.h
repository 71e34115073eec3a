#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"

class DRMGSummaryTable;
class QPlainTextEdit;

/// The outcome: what was moved, what was not, and what can be done now.
class DRMGCompletePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGCompletePage(DRMGSequenceStepComplete& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void renderRemarks();

    DRMGSequenceStepComplete& m_step;
    DRIconLabel* m_image;
    DRHtmlTextView* m_body;
    QLabel* m_summaryTitle;
    DRMGSummaryTable* m_summary;
    QPlainTextEdit* m_remarks; ///< may be many, so it scrolls
    DRHtmlTextView* m_note;
};
