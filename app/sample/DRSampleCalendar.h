#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds "Library/Calendar/Calendar.sqlitedb" with 150 events per unit of scale, the hard ones first, in five calendars of
/// which one is empty. False on failure, which is logged.
[[nodiscard]] bool addIPhoneCalendar(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
