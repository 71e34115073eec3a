#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSamplePhone;

/// Adds the packets of both contacts apps of the phone: its contacts as vCards and its call log. False on failure,
/// which is logged.
[[nodiscard]] bool addPhoneContacts(DRSamplePhone& phone, const DRSampleSettings& settings);
