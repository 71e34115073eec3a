#pragma once

#include <functional>

#include "platform/media/DRMP4Survey.h"

class DRMutableAbstractData;

/// How a file looks without the boxes that a survey found: which bytes go and which others change with them.
class DRMP4Removal {
public:
    /// Takes the new bytes for a position of the file as it was. False stops.
    using Writer = std::function<bool(quint64 offset, QByteArrayView bytes)>;

    explicit DRMP4Removal(DRMP4Findings findings);

    /// The bytes that go.
    [[nodiscard]] const std::vector<DRByteRange>& removedRanges() const { return m_findings.removals; }

    /// Where a position is afterwards; for one in a removed range, where that range was.
    [[nodiscard]] quint64 positionAfter(quint64 position) const;

    /// Hands `write` the changed sizes of enclosing boxes, counts of entries and positions of samples, none of them within a
    /// removed range. `source` must still have its removed bytes; it may be changed by `write`. False when it cannot be
    /// read or `write` answered false.
    [[nodiscard]] bool writeChanges(DRByteSource& source, const Writer& write) const;

    /// Makes the changes and removes the bytes, in the data that was surveyed. False when it is not that data.
    [[nodiscard]] bool applyTo(DRMutableAbstractData& data) const;

private:
    [[nodiscard]] bool isRemoved(quint64 position) const;
    [[nodiscard]] const DRByteRange* lastRemovalUpTo(quint64 position) const;
    [[nodiscard]] bool writeSize(const DRMP4Box& box, const Writer& write) const;
    [[nodiscard]] bool writeTable(const DRMP4PositionTable& table, DRByteSource& source, const Writer& write) const;
    void moveOffsets(QByteArray& entries, quint64 entryBytes) const;

    DRMP4Findings m_findings;
    std::vector<quint64> m_removedBefore; ///< for each removal, how many bytes earlier ones take
};
