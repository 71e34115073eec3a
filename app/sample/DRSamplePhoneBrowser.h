#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSamplePhone;

/// Adds the packet of the phone's browser: a few bookmarks and a folder in a database in write-ahead-log mode. False on
/// failure, which is logged.
[[nodiscard]] bool addPhoneBrowser(DRSamplePhone& phone, const DRSampleSettings& settings);
