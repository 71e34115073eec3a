#pragma once

#include "platform/folder_phone/DRStepOutcome.h"

/// What goes wrong alike with packets and with files, worded once.
namespace DRPhoneProblems {

/// Where something could not be written.
inline const QString kPhone = QStringLiteral("the phone");
inline const QString kComputer = QStringLiteral("the computer");

[[nodiscard]] DRStepOutcome phoneGone();
[[nodiscard]] DRStepOutcome noSpace(const QString& place);

/// `errorNumber` is the system's; a full disk is told as `noSpace`.
[[nodiscard]] DRStepOutcome cannotWrite(const QString& place, int errorNumber);

} // namespace DRPhoneProblems
