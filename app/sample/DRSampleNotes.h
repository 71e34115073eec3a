#pragma once

#include "app/sample/DRSampleSettings.h"

class DRSampleIPhoneBackup;
class DRSamplePhone;

/// Adds "Library/Notes/notes.sqlite" with 200 notes per unit of scale: the hard ones, one of 100,000 characters, else
/// everyday ones. False on failure, which is logged; so do all of these.
[[nodiscard]] bool addIPhoneNotes(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings);

/// Adds the packet of the phone's notes app with three notes of its own.
[[nodiscard]] bool addPhoneNotes(DRSamplePhone& phone, const DRSampleSettings& settings);
