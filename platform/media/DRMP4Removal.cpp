#include "platform/media/DRMP4Removal.h"

#include "platform/data/DRMutableAbstractData.h"
#include "platform/media/DRByteSource.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr quint64 kLongSizeOffset = 8;

template <typename T> QByteArrayView bigEndian(T number, std::array<char, sizeof(T)>& bytes)
{
    qToBigEndian(number, bytes.data());
    return {bytes.data(), qsizetype{sizeof(T)}};
}

template <typename T> bool writeNumber(quint64 offset, T number, const DRMP4Removal::Writer& write)
{
    std::array<char, sizeof(T)> bytes{};
    return write(offset, bigEndian(number, bytes));
}

bool writeEntryCount(const DRMP4EntryCount& count, DRByteSource& source, const DRMP4Removal::Writer& write)
{
    const QByteArrayView view = source.view(count.offset, sizeof(quint32));
    if (view.size() < qsizetype{sizeof(quint32)}) {
        return false;
    }
    const auto entries = qFromBigEndian<quint32>(view.data());
    const auto removed = static_cast<quint32>(std::min<quint64>(count.removedEntries, entries));
    return writeNumber(count.offset, entries - removed, write);
}

} // namespace

DRMP4Removal::DRMP4Removal(DRMP4Findings findings) : m_findings(std::move(findings))
{
    m_removedBefore.reserve(m_findings.removals.size());
    quint64 count = 0;
    for (const DRByteRange& removal : m_findings.removals) {
        m_removedBefore.push_back(count);
        count += removal.size();
    }
}

quint64 DRMP4Removal::positionAfter(quint64 position) const
{
    const DRByteRange* removal = lastRemovalUpTo(position);
    if (removal == nullptr) {
        return position;
    }
    const quint64 earlier = m_removedBefore[static_cast<std::size_t>(removal - m_findings.removals.data())];
    return position - earlier - (std::min(position, removal->end) - removal->offset);
}

bool DRMP4Removal::writeChanges(DRByteSource& source, const Writer& write) const
{
    for (const DRMP4Box& box : m_findings.shrinkingBoxes) {
        if (!writeSize(box, write)) {
            return false;
        }
    }
    for (const DRMP4EntryCount& count : m_findings.entryCounts) {
        if (!isRemoved(count.offset) && !writeEntryCount(count, source, write)) {
            return false;
        }
    }
    for (const DRMP4PositionTable& table : m_findings.positionTables) {
        if (!isRemoved(table.offset) && !writeTable(table, source, write)) {
            return false;
        }
    }
    return true;
}

bool DRMP4Removal::applyTo(DRMutableAbstractData& data) const
{
    DRMemorySource source(data);
    const auto overwrite = [&data](quint64 offset, QByteArrayView bytes) { return data.overwrite(offset, bytes); };
    return writeChanges(source, overwrite) && data.removeRanges(m_findings.removals);
}

bool DRMP4Removal::isRemoved(quint64 position) const
{
    const DRByteRange* removal = lastRemovalUpTo(position);
    return removal != nullptr && position < removal->end;
}

const DRByteRange* DRMP4Removal::lastRemovalUpTo(quint64 position) const
{
    const auto& removals = m_findings.removals;
    const auto next = std::upper_bound(removals.begin(), removals.end(), position,
                                       [](quint64 value, const DRByteRange& range) { return value < range.offset; });
    return next == removals.begin() ? nullptr : &*std::prev(next);
}

bool DRMP4Removal::writeSize(const DRMP4Box& box, const Writer& write) const
{
    const quint64 size = positionAfter(box.range.end) - positionAfter(box.range.offset);
    switch (box.sizeField) {
    case DRMP4SizeField::Bits32:
        return writeNumber(box.range.offset, static_cast<quint32>(size), write);
    case DRMP4SizeField::Bits64:
        return writeNumber(box.range.offset + kLongSizeOffset, size, write);
    case DRMP4SizeField::ToTheEnd:
        break;
    }
    return true;
}

bool DRMP4Removal::writeTable(const DRMP4PositionTable& table, DRByteSource& source, const Writer& write) const
{
    const quint64 end = table.offset + table.entries * table.entryBytes;
    for (quint64 offset = table.offset; offset < end;) {
        const quint64 count = std::min(end - offset, DRByteSource::kMaximumView);
        const QByteArray before = source.view(offset, count).toByteArray();
        if (static_cast<quint64>(before.size()) < count) {
            return false;
        }
        QByteArray after = before;
        moveOffsets(after, table.entryBytes);
        if (after != before && !write(offset, after)) {
            return false;
        }
        offset += count;
    }
    return true;
}

void DRMP4Removal::moveOffsets(QByteArray& entries, quint64 entryBytes) const
{
    char* const end = entries.data() + entries.size();
    for (char* entry = entries.data(); entry < end; entry += entryBytes) {
        if (entryBytes == sizeof(quint32)) {
            qToBigEndian(static_cast<quint32>(positionAfter(qFromBigEndian<quint32>(entry))), entry);
        } else {
            qToBigEndian(positionAfter(qFromBigEndian<quint64>(entry)), entry);
        }
    }
}
