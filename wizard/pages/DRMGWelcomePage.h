#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepWelcome.h"

class DRElidedLabel;

/// What the program does and what to prepare, with a place to choose another backup folder and the phone.
class DRMGWelcomePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGWelcomePage(DRMGSequenceStepWelcome& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    /// A text on a ground of its own, with what can be chosen for it below.
    [[nodiscard]] QWidget* makePanel(DRHtmlTextView* html, QPushButton* button, DRElidedLabel* choice);

    DRMGSequenceStepWelcome& m_step;
    DRHtmlTextView* m_body;
    DRHtmlTextView* m_firstStep;
    DRHtmlTextView* m_secondStep;
    DRElidedLabel* m_backupsFolder;
    DRElidedLabel* m_phone;
};
