#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"

class QGridLayout;
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
    void renderSummary();
    void addRow(QGridLayout& table, const DRMGSummaryRow& row);
    [[nodiscard]] QLabel* makeText(const QString& text, QPalette::ColorRole role);

    DRMGSequenceStepComplete& m_step;
    DRIconLabel* m_image;
    DRHtmlTextView* m_body;
    QLabel* m_summaryTitle;
    QWidget* m_summary = nullptr; ///< made anew for each outcome
    std::vector<DRMGSummaryRow> m_shownRows;
    QPlainTextEdit* m_remarks; ///< may be many, so it scrolls
    DRHtmlTextView* m_note;
};
