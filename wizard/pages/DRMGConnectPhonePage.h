#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSequenceStepConnectPhone.h"

class DRSpinner;

/// Waits for the phone: a picture until one is found, then a spinner.
class DRMGConnectPhonePage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGConnectPhonePage(DRMGSequenceStepConnectPhone& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    DRMGSequenceStepConnectPhone& m_step;
    DRIconLabel* m_picture;
    DRSpinner* m_spinner;
    QLabel* m_body;
    QLabel* m_note;
};
