#include "platform/media/DRMP4BoxReader.h"

#include "platform/media/DRByteSource.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

constexpr quint64 kShortHeader = 8;
constexpr quint64 kLongHeader = 16;

/// What a size field says when it does not tell the size.
constexpr quint32 kSizeToTheEnd = 0;
constexpr quint32 kSizeIn64Bits = 1;

/// Boxes that hold boxes and nothing before them.
constexpr std::array kContainers = {mp4Type("moov"), mp4Type("trak"), mp4Type("mdia"), mp4Type("minf"),
                                    mp4Type("stbl"), mp4Type("wave"), mp4Type("udta"), mp4Type("edts"),
                                    mp4Type("dinf"), mp4Type("mvex"), mp4Type("moof"), mp4Type("traf")};

/// Version, flags and count of entries.
constexpr quint64 kSampleDescriptionFields = 8;

constexpr std::array kSoundEntries = {mp4Type("mp4a"), mp4Type("enca"), mp4Type("alac"), mp4Type("lpcm"),
                                      mp4Type("samr")};

/// Where in a sound entry's content its version stands: after six reserved bytes and an index.
constexpr quint64 kSoundVersionOffset = 8;

/// Bytes of fields before a sound entry's child boxes, by the entry's version; 1 and 2 are QuickTime's.
constexpr std::array<quint64, 3> kSoundFields = {28, 44, 64};

template <typename Types> bool contains(const Types& types, quint32 type)
{
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace

bool DRMP4BoxReader::forEachBox(const DRByteRange& range, const std::function<bool(const DRMP4Box&)>& visit)
{
    quint64 offset = range.offset;
    while (range.end - offset >= kShortHeader) {
        const auto box = boxAt(offset, range.end);
        if (!box || !visit(*box)) {
            return false;
        }
        offset = box->range.end;
    }
    return true;
}

bool DRMP4BoxReader::isFilledWithBoxes(const DRByteRange& range)
{
    return forEachBox(range, [](const DRMP4Box&) { return true; });
}

std::optional<DRByteRange> DRMP4BoxReader::childrenOf(const DRMP4Box& box, quint32 parentType)
{
    const auto skipped = bytesBeforeChildren(box, parentType);
    if (!skipped || *skipped > box.range.end - box.contentOffset()) {
        return std::nullopt;
    }
    const DRByteRange children{.offset = box.contentOffset() + *skipped, .end = box.range.end};
    return isFilledWithBoxes(children) ? std::optional(children) : std::nullopt;
}

std::optional<DRMP4Box> DRMP4BoxReader::boxAt(quint64 offset, quint64 end)
{
    const quint64 available = end - offset;
    const QByteArrayView header = m_source.view(offset, std::min(available, kLongHeader));
    const auto headerBytes = static_cast<quint64>(header.size());
    if (headerBytes < kShortHeader) {
        return std::nullopt;
    }
    const auto type = qFromBigEndian<quint32>(header.data() + 4);
    const auto size = qFromBigEndian<quint32>(header.data());
    if (size == kSizeToTheEnd) {
        return DRMP4Box{.range = {offset, end}, .type = type, .sizeField = DRMP4SizeField::ToTheEnd};
    }
    if (size != kSizeIn64Bits) {
        return size >= kShortHeader && size <= available
                   ? std::optional(DRMP4Box{.range = {offset, offset + size}, .type = type})
                   : std::nullopt;
    }
    if (headerBytes < kLongHeader) {
        return std::nullopt;
    }
    const auto longSize = qFromBigEndian<quint64>(header.data() + kShortHeader);
    if (longSize < kLongHeader || longSize > available) {
        return std::nullopt;
    }
    return DRMP4Box{.range = {offset, offset + longSize}, .type = type, .sizeField = DRMP4SizeField::Bits64};
}

std::optional<quint64> DRMP4BoxReader::bytesBeforeChildren(const DRMP4Box& box, quint32 parentType)
{
    if (contains(kContainers, box.type)) {
        return 0;
    }
    if (box.type == mp4Type("stsd")) {
        return kSampleDescriptionFields;
    }
    // A sound format's name is also that of small boxes elsewhere, which hold no others.
    if (parentType == mp4Type("stsd") && contains(kSoundEntries, box.type)) {
        return bytesOfSoundEntry(box);
    }
    return std::nullopt;
}

std::optional<quint64> DRMP4BoxReader::bytesOfSoundEntry(const DRMP4Box& box)
{
    const quint64 offset = box.contentOffset() + kSoundVersionOffset;
    if (offset > box.range.end || box.range.end - offset < sizeof(quint16)) {
        return std::nullopt;
    }
    const QByteArrayView view = m_source.view(offset, sizeof(quint16));
    if (view.size() < qsizetype{sizeof(quint16)}) {
        return std::nullopt;
    }
    const auto version = qFromBigEndian<quint16>(view.data());
    return version < kSoundFields.size() ? std::optional(kSoundFields.at(version)) : std::nullopt;
}
