#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds "Library/SMS/sms.db" and the files of its messages: hard conversations, and per unit of scale 9 chats with 1,400
/// messages of the last year and 2 groups of the years before, in which the older layout stands. No file is missing from
/// the backup. False on failure, which is logged.
[[nodiscard]] bool addIPhoneMessages(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
