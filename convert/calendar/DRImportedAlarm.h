#pragma once

#include <QDateTime>

/// A reminder of an event.
struct DRImportedAlarm {
    QDateTime date; ///< when it fires, in UTC

    bool operator==(const DRImportedAlarm&) const = default;
};
