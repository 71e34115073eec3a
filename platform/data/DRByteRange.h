#pragma once

#include <QtGlobal>

/// A run of bytes of a file or of bytes in memory.
struct DRByteRange {
    quint64 offset = 0;
    quint64 end = 0; ///< the position after the last byte

    [[nodiscard]] quint64 size() const { return end - offset; }
    bool operator==(const DRByteRange&) const = default;
};
