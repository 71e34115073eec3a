#pragma once

#include <vector>

#include "platform/data/DRAbstractData.h"
#include "platform/data/DRByteRange.h"

/// Bytes in memory that can be read like a file and changed.
///
/// A change makes every view into the bytes invalid. Whoever shares them, by `bytes()`, keeps them as they were.
class DRMutableAbstractData : public DRAbstractData {
public:
    using DRAbstractData::DRAbstractData;

    /// Puts the bytes in the place of as many others. False, with nothing changed, when they would reach past the end.
    [[nodiscard]] bool overwrite(quint64 offset, QByteArrayView bytes);

    /// Removes all ranges at once, in time that grows with the length and not with the number of ranges. They must be
    /// sorted and must not overlap; the positions are those before the removal. False, with nothing changed, when they
    /// are not so or reach past the end. The reading position stays before the byte that it stood before.
    [[nodiscard]] bool removeRanges(const std::vector<DRByteRange>& ranges);
};
