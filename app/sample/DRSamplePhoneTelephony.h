#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSamplePhone;

/// Adds the packet of the phone's message store: two conversations of text messages and a multimedia message with an
/// attachment. False on failure, which is logged.
[[nodiscard]] bool addPhoneTelephony(DRSamplePhone& phone, const DRSampleSettings& settings);
