#pragma once

#include <QDateTime>

/// What a sample is made from. Equal settings make equal content.
struct DRSampleSettings {
    QDateTime moment; ///< when the backup was made, UTC, whole seconds; every date in the sample counts from it
    int scale = 1;    ///< how many times the basic amount of content, at least 1
};
