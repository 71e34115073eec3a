#include "wizard/steps/DRMGSequenceStepPhoneIncompatible.h"

#include "platform/core/DRLog.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

namespace {

const QString kContactsSetupLink = u"contactssetup"_s;

} // namespace

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

QString DRMGSequenceStepPhoneIncompatible::bodyHtml() const
{
    const DRDCDevicePointer device = activeDevice();
    const QString name = device ? withoutControlCharacters(device->marketingName()).toHtmlEscaped() : QString();
    return DRMGHtml::joined(
        u"%@<br />%@<br /><br />%@"_s,
        {text(u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_TXT1"_s).replace(u"%ws"_s, name),
         text(u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_TXT4"_s),
         DRMGHtml::withLink(text(u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_TXT2"_s), kContactsSetupLink)});
}

bool DRMGSequenceStepPhoneIncompatible::linkClicked(const QString& link)
{
    if (DRMGHtml::isLink(link, kContactsSetupLink)) {
        sequence()->cancel();
        Q_EMIT migration().contactsSetupSelected();
    }
    return true;
}
