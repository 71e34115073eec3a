#pragma once

#include <vector>

#include "platform/device/DRDCFile.h"

/// Takes out of videos what the players of old phones stumble over.
class DRVideoCleaner {
public:
    virtual ~DRVideoCleaner() = default;

    struct Outcome {
        std::vector<DRDCFilePointer> files;
        std::vector<DRDCFilePointer> dropped; ///< videos whose cleaned copy could not be written
    };

    /// The files in their order, with each video that needs it replaced by a cleaned copy. Called on the background queue.
    [[nodiscard]] virtual Outcome cleanEntries(const std::vector<DRDCFilePointer>& files) const = 0;
};
