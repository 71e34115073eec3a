#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

class DRMigrateTransmisionAnimation;
class QProgressBar;

/// How far the transfer is.
class DRMGTransferPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGTransferPage(DRMGSequenceStepTransfer& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void renderProgress();
    void renderAnimation();

    DRMGSequenceStepTransfer& m_step;
    DRMigrateTransmisionAnimation* m_animation;
    bool m_isAnimating = false;
    QLabel* m_phase;
    QProgressBar* m_progressBar;
    DRHtmlTextView* m_progressText;
    DRHtmlTextView* m_note;
};
