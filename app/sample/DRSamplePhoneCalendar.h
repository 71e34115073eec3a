#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSamplePhone;

/// Adds the packet of the phone's calendar store: one local calendar with two events. False on failure, which is
/// logged.
[[nodiscard]] bool addPhoneCalendar(DRSamplePhone& phone, const DRSampleSettings& settings);
