#include "platform/folder_phone/DRPhoneProblems.h"

#include <cerrno>

using namespace Qt::StringLiterals;

DRStepOutcome DRPhoneProblems::phoneGone()
{
    return DRStepOutcome::failed(u"the phone is no longer connected"_s);
}

DRStepOutcome DRPhoneProblems::noSpace(const QString& place)
{
    return DRStepOutcome::failed(u"not enough space on "_s + place);
}

DRStepOutcome DRPhoneProblems::cannotWrite(const QString& place, int errorNumber)
{
    if (errorNumber == ENOSPC || errorNumber == EDQUOT) {
        return noSpace(place);
    }
    return DRStepOutcome::failed(u"it cannot be written to %1: %2"_s.arg(place, qt_error_string(errorNumber)));
}
