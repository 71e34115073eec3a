#pragma once

#include <QString>

/// Where an event takes place.
struct DRImportedLocation {
    QString title; ///< null when the iPhone has none

    bool operator==(const DRImportedLocation&) const = default;
};
