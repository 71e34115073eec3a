#include "platform/data/DRMutableAbstractData.h"

#include <algorithm>
#include <cstring>

namespace {

bool areInOrder(const std::vector<DRByteRange>& ranges, quint64 length)
{
    quint64 previousEnd = 0;
    for (const DRByteRange& range : ranges) {
        if (range.offset < previousEnd || range.end < range.offset) {
            return false;
        }
        previousEnd = range.end;
    }
    return previousEnd <= length;
}

/// How many of the removed bytes lie before the position.
quint64 removedBefore(quint64 position, const std::vector<DRByteRange>& ranges)
{
    quint64 count = 0;
    for (const DRByteRange& range : ranges) {
        if (range.offset >= position) {
            break;
        }
        count += std::min(range.end, position) - range.offset;
    }
    return count;
}

} // namespace

bool DRMutableAbstractData::overwrite(quint64 offset, QByteArrayView bytes)
{
    const auto length = static_cast<quint64>(this->length());
    const auto count = static_cast<quint64>(bytes.size());
    if (offset > length || count > length - offset) {
        return false;
    }
    if (count > 0) {
        std::memcpy(changeableBytes().data() + offset, bytes.data(), count);
    }
    return true;
}

bool DRMutableAbstractData::removeRanges(const std::vector<DRByteRange>& ranges)
{
    const auto length = static_cast<quint64>(this->length());
    if (!areInOrder(ranges, length)) {
        return false;
    }
    if (ranges.empty()) {
        return true;
    }
    const auto position = static_cast<quint64>(offset());
    QByteArray& bytes = changeableBytes();
    char* const start = bytes.data();
    char* kept = start + ranges.front().offset;
    for (std::size_t index = 0; index < ranges.size(); ++index) {
        const quint64 next = index + 1 < ranges.size() ? ranges[index + 1].offset : length;
        const quint64 count = next - ranges[index].end;
        std::memmove(kept, start + ranges[index].end, count);
        kept += count;
    }
    bytes.truncate(kept - start);
    setOffset(static_cast<qint64>(position - removedBefore(position, ranges)));
    return true;
}
