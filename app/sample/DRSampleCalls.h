#pragma once

#include "app/sample/DRSampleSettings.h"

#include <QString>

#include <vector>

class DRSampleIPhoneBackup;

/// Somebody of the address book who may be called.
struct DRSampleCallee {
    qint64 personId = 0;
    QString number; ///< as it stands in the address book
    QString email;  ///< for FaceTime; null when there is none
};

/// Adds "Library/CallHistory/call_history.db" with 150 calls per unit of scale, the oldest first: hard ones, else calls
/// with the callees, of whom there must be at least one. False on failure, which is logged.
[[nodiscard]] bool addIPhoneCalls(DRSampleIPhoneBackup& backup,
                                  const DRSampleSettings& settings,
                                  const std::vector<DRSampleCallee>& callees);
