#pragma once

#include "wizard/pages/DRMGSelectionEntries.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"

class DRSpinner;
class QLayout;

/// The chosen backup and a tick box for each kind of content, in two columns.
class DRMGSelectDataPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGSelectDataPage(DRMGSequenceStepSelectData& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    [[nodiscard]] QLayout* makeBackupRow();
    [[nodiscard]] QLayout* makeColumns();
    [[nodiscard]] QLayout* makeStatusRow();

    DRMGSequenceStepSelectData& m_step;
    DRHtmlTextView* m_body;
    DRIconLabel* m_iPhoneImage;
    QLabel* m_iPhoneName;
    DRHtmlTextView* m_iPhoneBackupInfo;
    DRMGSelectionEntries m_checkboxes;
    DRSpinner* m_waitingSpinner;
    QLabel* m_status;
};
