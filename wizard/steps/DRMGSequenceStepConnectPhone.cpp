#include "wizard/steps/DRMGSequenceStepConnectPhone.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/device/DRDCNotifications.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

DRMGSequenceStepConnectPhone::DRMGSequenceStepConnectPhone(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kConnectPhone,
                        .heading = u"IDD_STEPWIZ_CONNECT_PHONE_IDC_HEADER"_s,
                        .pageViewComponents = {u"connect-phone"_s}})
{
}

void DRMGSequenceStepConnectPhone::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    setStateMask(kStateCancelEnabled);
    const DRDCDevicePointer device = activeDevice();
    if (device && device->hasStateFlag(DRDCDevice::kStateFlagReady)) {
        sequence()->next();
        return;
    }
    DRNotificationCenter& center = context().services.notificationCenter;
    m_registrations.push_back(center.observe(DRDCNotifications::kActiveDeviceWillFinishInit,
                                             [this](const DRNotification&) { deviceWillBecomeActive(); }));
    m_registrations.push_back(center.observe(DRDCNotifications::kActiveDeviceDidFinishEnumeration,
                                             [this](const DRNotification&) { deviceDidFinishEnumeration(); }));
    setDeviceDetected(device != nullptr);
}

void DRMGSequenceStepConnectPhone::stepWillDisappear()
{
    m_registrations.clear();
    DRMGSequenceStep::stepWillDisappear();
}

bool DRMGSequenceStepConnectPhone::sequenceShouldChangeToNextStep()
{
    routeTowardsTransfer();
    return false;
}

void DRMGSequenceStepConnectPhone::deviceWillBecomeActive()
{
    setDeviceDetected(true);
}

void DRMGSequenceStepConnectPhone::deviceDidFinishEnumeration()
{
    setStateMask(kStateCancelEnabled | kStateNextEnabled);
    sequence()->next();
}

void DRMGSequenceStepConnectPhone::setDeviceDetected(bool detected)
{
    m_isDeviceDetected = detected;
    Q_EMIT contentChanged();
}
