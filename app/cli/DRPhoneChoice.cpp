#include "app/cli/DRPhoneChoice.h"

#include "app/DRMigrateStartup.h"
#include "platform/core/DRLog.h"

using namespace Qt::StringLiterals;

DRResult<DRDCDevicePointer> DRPhoneChoice::open(DRMigrateStartup& startup)
{
    const QString& folder = startup.options().phoneFolder;
    if (folder.isEmpty()) {
        return DRCommandOutcome{
            DRExitCode::NoPhone, u"No phone was named."_s,
            u"name the folder of a phone: --phone DIR, or make one to try: phone-migrate sample DIR"_s};
    }
    const DRDCDevicePointer phone = startup.openPhone();
    if (!phone) {
        return DRCommandOutcome{DRExitCode::NoPhone,
                                u"%1 is no phone: there is no such folder, or its phone.json cannot be read."_s.arg(
                                    withoutControlCharacters(folder)),
                                u"check the folder, or make a phone to try: phone-migrate sample DIR"_s};
    }
    if (!phone->hasStateFlag(DRDCDevice::kStateFlagReady)) {
        return DRCommandOutcome{DRExitCode::NoPhone, u"The phone is not ready."_s,
                                u"unlock it, allow this computer to use it, then type: phone-migrate phone"_s};
    }
    return phone;
}

DRResult<DRDCDevicePointer> DRPhoneChoice::openForWriting(DRMigrateStartup& startup)
{
    auto choice = open(startup);
    if (const auto* phone = std::get_if<DRDCDevicePointer>(&choice)) {
        if (auto refusal = compatibility(**phone); refusal.code != DRExitCode::Done) {
            return refusal;
        }
    }
    return choice;
}

DRCommandOutcome DRPhoneChoice::compatibility(const DRDCDevice& phone)
{
    static constexpr quint32 kOldestAndroid = 2;
    if (phone.androidBaseVersion() >= kOldestAndroid) {
        return {};
    }
    return {
        DRExitCode::PhoneIncompatible,
        u"The system of your %1 (Android %2) is too old to receive content in this way. Nothing on the phone was changed."_s
            .arg(withoutControlCharacters(phone.marketingName()))
            .arg(phone.androidBaseVersion()),
        u"update the phone's system, then type: phone-migrate phone"_s};
}
