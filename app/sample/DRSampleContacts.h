#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds the address book with 120 people and companies per unit of scale, the hard ones first; their pictures, which about
/// one in five has; and the call history. False on failure, which is logged.
[[nodiscard]] bool addIPhoneContacts(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
