#pragma once

#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "platform/media/DRMP4BoxReader.h"
#include "platform/media/DRMP4Path.h"

/// Numbers that say where in the file samples lie: a track's chunk offsets ("stco", "co64") or the one of a fragment
/// ("tfhd").
struct DRMP4PositionTable {
    quint64 offset = 0; ///< of the first number
    quint64 entries = 0;
    quint64 entryBytes = 0; ///< 4 or 8
};

/// The number of sample descriptions at the head of an "stsd" box that loses some.
struct DRMP4EntryCount {
    quint64 offset = 0; ///< of the 32-bit number
    quint64 removedEntries = 0;
};

/// What in a file has to do with the removal of boxes.
struct DRMP4Findings {
    std::vector<DRByteRange> removals;    ///< the boxes to remove: sorted, neighbours joined, never empty ranges
    std::vector<DRMP4Box> shrinkingBoxes; ///< that stay and enclose something to remove
    std::vector<DRMP4EntryCount> entryCounts;
    std::vector<DRMP4PositionTable> positionTables; ///< of the whole file
};

/// Looks through a file for the boxes at some paths and for what depends on them, in one pass that goes only where it
/// must and never deeper than the longest path.
class DRMP4Survey {
public:
    enum class Outcome {
        Complete,
        Malformed, ///< boxes of the file, or those down to its position tables, are not well formed or cannot be read
        TooMuch,   ///< more was found than may be kept
    };

    struct Limits {
        std::size_t maximumFindings = std::numeric_limits<std::size_t>::max();
        std::optional<quint64> onlyAt; ///< when set, only a box that begins here is to be removed
    };

    /// The source must outlive this object.
    DRMP4Survey(DRByteSource& source, const std::vector<DRMP4Path>& removedPaths, const Limits& limits);

    [[nodiscard]] Outcome run();

    /// What was found; of use only after a complete run.
    [[nodiscard]] const DRMP4Findings& findings() const { return m_findings; }
    [[nodiscard]] DRMP4Findings takeFindings() { return std::move(m_findings); }

private:
    enum class Duty { Remove, ChunkOffsets32, ChunkOffsets64, FragmentStart };
    struct Goal {
        Duty duty = Duty::Remove;
        DRMP4Path path;
    };
    using Goals = std::vector<const Goal*>;
    struct Container {
        DRByteRange children;
        quint32 type = 0;
        std::size_t depth = 0;
        Goals goals; ///< that may lie below
    };

    [[nodiscard]] bool walk(const Container& container);
    [[nodiscard]] bool visit(const DRMP4Box& box, const Container& container, quint64& removedChildren);
    [[nodiscard]] bool descend(const DRMP4Box& box, const Container& container, Goals goals);
    [[nodiscard]] bool isToRemove(const DRMP4Box& box) const;
    [[nodiscard]] bool notePositions(const DRMP4Box& box, Duty duty);
    [[nodiscard]] bool noteChunkOffsets(const DRMP4Box& box, quint64 entryBytes);
    [[nodiscard]] bool noteFragmentStart(const DRMP4Box& box);
    [[nodiscard]] std::optional<quint32> numberIn(const DRMP4Box& box, quint64 contentPosition);
    void noteRemoval(const DRByteRange& range);
    [[nodiscard]] bool isWithinLimit() const;

    DRByteSource& m_source;
    DRMP4BoxReader m_reader;
    Limits m_limits;
    std::vector<Goal> m_goals;
    DRMP4Findings m_findings;
    quint64 m_removedBytes = 0;
};
