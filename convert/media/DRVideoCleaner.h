#pragma once

#include <vector>

#include "platform/device/DRDCFile.h"

/// Takes out of videos what the players of old phones stumble over.
class DRVideoCleaner {
public:
    virtual ~DRVideoCleaner() = default;

    /// The files with each video that needs it replaced by a cleaned copy. Called on the background queue.
    [[nodiscard]] virtual std::vector<DRDCFilePointer>
    cleanEntries(const std::vector<DRDCFilePointer>& files) const = 0;
};
