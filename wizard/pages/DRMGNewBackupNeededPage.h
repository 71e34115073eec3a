#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepNewBackupNeeded.h"

class DRElidedLabel;

/// Why a new iPhone backup is needed, with a place to choose another backup folder.
class DRMGNewBackupNeededPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGNewBackupNeededPage(DRMGSequenceStepNewBackupNeeded& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    DRMGSequenceStepNewBackupNeeded& m_step;
    DRIconLabel* m_image;
    DRHtmlTextView* m_reason;
    DRHtmlTextView* m_note;
    DRElidedLabel* m_backupsFolder;
};
