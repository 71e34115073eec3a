#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;

/// Adds "Library/Safari/Bookmarks.db" with 120 bookmarks per unit of scale: the hard ones in their folders, then folders
/// of everyday ones. No title or address holds a double quote or a backslash, which Chrome's file could not take. False
/// on failure, which is logged.
[[nodiscard]] bool addIPhoneBookmarks(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);
