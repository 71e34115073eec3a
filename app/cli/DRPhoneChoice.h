#pragma once

#include "app/cli/DRCommandOutcome.h"
#include "platform/device/DRDCDevice.h"

class DRMigrateStartup;

/// Opens the phone that was chosen.
namespace DRPhoneChoice {

/// The phone, in use and ready; else why there is none and how to name one.
[[nodiscard]] DRResult<DRDCDevicePointer> open(DRMigrateStartup& startup);

/// The same for a phone that something is written to: why not also when its system is too old.
[[nodiscard]] DRResult<DRDCDevicePointer> openForWriting(DRMigrateStartup& startup);

/// Whether its system can take content at all: an outcome with code PhoneIncompatible, or Done.
[[nodiscard]] DRCommandOutcome compatibility(const DRDCDevice& phone);

} // namespace DRPhoneChoice
