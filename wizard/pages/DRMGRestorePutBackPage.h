#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

class DRSpinner;
class QProgressBar;

/// How far putting the apps back is.
class DRMGRestorePutBackPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGRestorePutBackPage(DRMGRestoreStepPutBack& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void renderProgress();

    DRMGRestoreStepPutBack& m_step;
    DRIconLabel* m_picture;
    QLabel* m_phase;
    QProgressBar* m_progressBar;
    DRSpinner* m_spinner; ///< in its place while nobody knows how much there is to do
    QLabel* m_time;
    QLabel* m_note;
};
