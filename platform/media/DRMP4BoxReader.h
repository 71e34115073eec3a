#pragma once

#include <functional>
#include <optional>

#include "platform/media/DRMP4Box.h"

class DRByteSource;

/// Reads box headers, never past the container that they lie in.
class DRMP4BoxReader {
public:
    /// The source must outlive this object.
    explicit DRMP4BoxReader(DRByteSource& source) : m_source(source) {}

    /// Calls `visit` for the boxes that fill the range, one after the other; up to seven bytes after the last one, too
    /// few for a header, are padding. False as soon as a box is malformed, reaches beyond the range or `visit` answers
    /// false.
    bool forEachBox(const DRByteRange& range, const std::function<bool(const DRMP4Box&)>& visit);

    /// Whether boxes and nothing else fill the range.
    [[nodiscard]] bool isFilledWithBoxes(const DRByteRange& range);

    /// The part of a box that its child boxes fill. None when boxes of this type hold no others, or what this one holds
    /// are no well-formed boxes. `parentType` is 0 for a box that lies directly in the file.
    [[nodiscard]] std::optional<DRByteRange> childrenOf(const DRMP4Box& box, quint32 parentType);

private:
    [[nodiscard]] std::optional<DRMP4Box> boxAt(quint64 offset, quint64 end);
    [[nodiscard]] std::optional<quint64> bytesBeforeChildren(const DRMP4Box& box, quint32 parentType);
    [[nodiscard]] std::optional<quint64> bytesOfSoundEntry(const DRMP4Box& box);

    DRByteSource& m_source;
};
