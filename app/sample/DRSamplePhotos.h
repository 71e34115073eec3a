#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds a camera roll of 60 photos and 6 films per unit of scale, which also has two albums: the pictures in
/// "CameraRollDomain-Media/DCIM" and the library "Photos.sqlite". A third of them have the names of others, in other
/// folders. False on failure, which is logged.
[[nodiscard]] bool addIPhonePhotos(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
