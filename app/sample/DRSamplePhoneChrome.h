#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSamplePhone;

/// Adds the packet of Chrome: its bookmarks file with a few bookmarks. False on failure, which is logged.
[[nodiscard]] bool addPhoneChrome(DRSamplePhone& phone, const DRSampleSettings& settings);
