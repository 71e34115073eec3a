#include "wizard/steps/DRMGSequenceStepPhoneIncompatible.h"

#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

DRMGSequenceStepPhoneIncompatible::DRMGSequenceStepPhoneIncompatible(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kPhoneIncompatible,
                        .heading = u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_HEADER"_s,
                        .pageViewComponents = {u"phone-incompatible"_s}})
{
}

void DRMGSequenceStepPhoneIncompatible::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    setStateMask(kStateNextDisabled);
}

void DRMGSequenceStepPhoneIncompatible::stepDidAppearInDirection(DRSequenceDirection)
{
    DRMGAnalyticsSendErrorEvent(context().analytics, DRMGErrorEvent::PhoneIncompatible);
}
