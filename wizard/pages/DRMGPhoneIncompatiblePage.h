#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepPhoneIncompatible.h"

/// Says that the phone cannot be used, and what else can be done.
class DRMGPhoneIncompatiblePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGPhoneIncompatiblePage(DRMGSequenceStepPhoneIncompatible& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    DRMGSequenceStepPhoneIncompatible& m_step;
    DRHtmlTextView* m_body;
};
