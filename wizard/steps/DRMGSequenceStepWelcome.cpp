#include "wizard/steps/DRMGSequenceStepWelcome.h"

#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

DRMGSequenceStepWelcome::DRMGSequenceStepWelcome(const DRMGContext& context)
    : DRMGSequenceStep(
          context,
          {.key = DRMGStepKeys::kWelcome, .heading = u"IDD_STUDIO_IDC_HEADER"_s, .pageViewComponents = {u"welcome"_s}})
{
}

void DRMGSequenceStepWelcome::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    DRMGAnalyticsSendSequenceStartedEvent(context().analytics);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDCANCEL"_s);
}

bool DRMGSequenceStepWelcome::sequenceShouldChangeToNextStep()
{
    migration().gotoNextIPhoneStepWithDevice(activeDevice(), migration().latestBackupList());
    return false;
}
