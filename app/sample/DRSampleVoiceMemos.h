#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds 8 voice memos per unit of scale and their database "Recordings.db". False on failure, which is logged.
[[nodiscard]] bool addIPhoneVoiceMemos(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
