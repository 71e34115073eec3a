#include "wizard/steps/DRMGSequenceStepConnectPhone.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/device/DRDCNotifications.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

namespace {

} // namespace

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
    // A phone that was in use and comes back is not announced anew.
    m_lookTimer = context().timers.repeatEvery(kLookForPhoneInterval, [this] { goOnIfReady(); });
    DRNotificationCenter& center = context().services.notificationCenter;
    m_registrations.push_back(center.observe(DRDCNotifications::kActiveDeviceWillFinishInit,
                                             [this](const DRNotification&) { deviceWillBecomeActive(); }));
    m_registrations.push_back(center.observe(DRDCNotifications::kActiveDeviceDidFinishEnumeration,
                                             [this](const DRNotification&) { deviceDidFinishEnumeration(); }));
    setDeviceDetected(device != nullptr);
}

void DRMGSequenceStepConnectPhone::stepWillDisappear()
{
    m_lookTimer.reset();
    m_registrations.clear();
    DRMGSequenceStep::stepWillDisappear();
}

bool DRMGSequenceStepConnectPhone::sequenceShouldChangeToNextStep()
{
    routeTowardsTransfer();
    return false;
}

QString DRMGSequenceStepConnectPhone::bodyText() const
{
    return text(m_isDeviceDetected ? u"IDD_STEPWIZ_DETECT_PHONE_IDC_STATIC"_s
                                   : u"IDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC"_s);
}

QString DRMGSequenceStepConnectPhone::noteText() const
{
    if (m_isDeviceDetected) {
        return text(u"IDD_STEPWIZ_DETECT_PHONE_IDC_STATIC_2"_s);
    }
    return joined(u"%@\n%@"_s,
                  {u"IDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC_2"_s, u"IDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC_3"_s});
}

QString DRMGSequenceStepConnectPhone::imageName() const
{
    return u"migrate_connect_phone"_s;
}

QString DRMGSequenceStepConnectPhone::imageText() const
{
    return text(m_isDeviceDetected ? u"wizard_name_connecting"_s : u"wizard_name_connect_picture"_s);
}

void DRMGSequenceStepConnectPhone::goOnIfReady()
{
    const DRDCDevicePointer device = activeDevice();
    if (device && device->hasStateFlag(DRDCDevice::kStateFlagReady)) {
        deviceDidFinishEnumeration();
    }
}

void DRMGSequenceStepConnectPhone::deviceWillBecomeActive()
{
    setDeviceDetected(true);
}

void DRMGSequenceStepConnectPhone::deviceDidFinishEnumeration()
{
    m_lookTimer.reset(); // a question may keep the page, and must not be asked again and again
    setStateMask(kStateCancelEnabled | kStateNextEnabled);
    sequence()->next();
}

void DRMGSequenceStepConnectPhone::setDeviceDetected(bool detected)
{
    m_isDeviceDetected = detected;
    Q_EMIT contentChanged();
}
