#include "platform/media/DRMP4Survey.h"

#include "platform/media/DRByteSource.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace {

/// A chunk offset box: version and flags, count of entries, entries.
constexpr quint64 kTableCountPosition = 4;
constexpr quint64 kTableEntriesPosition = 8;

/// A fragment header: version and flags, track, then where its data begins if a flag says so.
constexpr quint32 kHasDataPosition = 1;
constexpr quint64 kDataPosition = 8;

DRMP4Path chunkTablePath(quint32 type)
{
    return {mp4Type("moov"), mp4Type("trak"), mp4Type("mdia"), mp4Type("minf"), mp4Type("stbl"), type};
}

} // namespace

DRMP4Survey::DRMP4Survey(DRByteSource& source, const std::vector<DRMP4Path>& removedPaths, const Limits& limits)
    : m_source(source), m_reader(source), m_limits(limits)
{
    m_goals.push_back({Duty::ChunkOffsets32, chunkTablePath(mp4Type("stco"))});
    m_goals.push_back({Duty::ChunkOffsets64, chunkTablePath(mp4Type("co64"))});
    m_goals.push_back({Duty::FragmentStart, {mp4Type("moof"), mp4Type("traf"), mp4Type("tfhd")}});
    for (const DRMP4Path& path : removedPaths) {
        m_goals.push_back({Duty::Remove, path});
    }
}

DRMP4Survey::Outcome DRMP4Survey::run()
{
    m_findings = {};
    m_removedBytes = 0;
    Container file{.children = {0, m_source.length()}};
    for (const Goal& goal : m_goals) {
        file.goals.push_back(&goal);
    }
    if (m_reader.isFilledWithBoxes(file.children) && walk(file)) {
        return Outcome::Complete;
    }
    return isWithinLimit() ? Outcome::Malformed : Outcome::TooMuch;
}

bool DRMP4Survey::walk(const Container& container)
{
    quint64 removedChildren = 0;
    const bool isRead = m_reader.forEachBox(
        container.children, [&](const DRMP4Box& box) { return visit(box, container, removedChildren); });
    if (removedChildren > 0 && container.type == mp4Type("stsd")) {
        m_findings.entryCounts.push_back({container.children.offset - sizeof(quint32), removedChildren});
    }
    return isRead;
}

bool DRMP4Survey::visit(const DRMP4Box& box, const Container& container, quint64& removedChildren)
{
    Goals deeper;
    bool isReached = false;
    for (const Goal* goal : container.goals) {
        if (goal->path[container.depth] != box.type) {
            continue;
        }
        if (container.depth + 1 < goal->path.size()) {
            deeper.push_back(goal);
        } else if (goal->duty == Duty::Remove) {
            isReached = true;
        } else if (!notePositions(box, goal->duty)) {
            return false;
        }
    }
    if (isReached && isToRemove(box)) {
        noteRemoval(box.range);
        ++removedChildren;
    }
    // Also below a box that goes away: whether a file is well formed must not depend on what is removed from it.
    return isWithinLimit() && (deeper.empty() || descend(box, container, std::move(deeper)));
}

bool DRMP4Survey::descend(const DRMP4Box& box, const Container& container, Goals goals)
{
    const auto children = m_reader.childrenOf(box, container.type);
    if (!children) {
        // What cannot be looked into has no boxes to remove; but positions must not be missed.
        return std::all_of(goals.begin(), goals.end(), [](const Goal* goal) { return goal->duty == Duty::Remove; });
    }
    const quint64 removedBefore = m_removedBytes;
    if (!walk({.children = *children, .type = box.type, .depth = container.depth + 1, .goals = std::move(goals)})) {
        return false;
    }
    if (m_removedBytes > removedBefore) {
        m_findings.shrinkingBoxes.push_back(box);
    }
    return true;
}

bool DRMP4Survey::isToRemove(const DRMP4Box& box) const
{
    return !m_limits.onlyAt || *m_limits.onlyAt == box.range.offset;
}

bool DRMP4Survey::notePositions(const DRMP4Box& box, Duty duty)
{
    switch (duty) {
    case Duty::ChunkOffsets32:
        return noteChunkOffsets(box, sizeof(quint32));
    case Duty::ChunkOffsets64:
        return noteChunkOffsets(box, sizeof(quint64));
    case Duty::FragmentStart:
        return noteFragmentStart(box);
    case Duty::Remove:
        break;
    }
    return true;
}

bool DRMP4Survey::noteChunkOffsets(const DRMP4Box& box, quint64 entryBytes)
{
    const auto entries = numberIn(box, kTableCountPosition);
    const quint64 content = box.range.end - box.contentOffset();
    if (!entries || *entries > (content - kTableEntriesPosition) / entryBytes) {
        return false;
    }
    m_findings.positionTables.push_back(
        {.offset = box.contentOffset() + kTableEntriesPosition, .entries = *entries, .entryBytes = entryBytes});
    return true;
}

bool DRMP4Survey::noteFragmentStart(const DRMP4Box& box)
{
    const auto flags = numberIn(box, 0);
    if (!flags || (*flags & kHasDataPosition) == 0) {
        return flags.has_value();
    }
    const quint64 offset = box.contentOffset() + kDataPosition;
    if (box.range.end - box.contentOffset() < kDataPosition + sizeof(quint64)) {
        return false;
    }
    m_findings.positionTables.push_back({.offset = offset, .entries = 1, .entryBytes = sizeof(quint64)});
    return true;
}

std::optional<quint32> DRMP4Survey::numberIn(const DRMP4Box& box, quint64 contentPosition)
{
    if (box.range.end - box.contentOffset() < contentPosition + sizeof(quint32)) {
        return std::nullopt;
    }
    const QByteArrayView view = m_source.view(box.contentOffset() + contentPosition, sizeof(quint32));
    if (view.size() < qsizetype{sizeof(quint32)}) {
        return std::nullopt;
    }
    return qFromBigEndian<quint32>(view.data());
}

/// Boxes come in the order of the file, an enclosing one before what it holds.
void DRMP4Survey::noteRemoval(const DRByteRange& range)
{
    auto& removals = m_findings.removals;
    if (removals.empty() || removals.back().end < range.offset) {
        removals.push_back(range);
        m_removedBytes += range.size();
        return;
    }
    const quint64 end = std::max(removals.back().end, range.end);
    m_removedBytes += end - removals.back().end;
    removals.back().end = end;
}

bool DRMP4Survey::isWithinLimit() const
{
    return m_findings.removals.size() + m_findings.shrinkingBoxes.size() + m_findings.entryCounts.size() +
               m_findings.positionTables.size() <=
           m_limits.maximumFindings;
}
