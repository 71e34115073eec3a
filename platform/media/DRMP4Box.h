#pragma once

#include "platform/data/DRByteRange.h"

/// How a box says how long it is.
enum class DRMP4SizeField { Bits32, Bits64, ToTheEnd };

/// One box: a header of 8 or 16 bytes and what belongs to it.
struct DRMP4Box {
    DRByteRange range; ///< header and content
    quint32 type = 0;  ///< four characters, the first one in the highest byte
    DRMP4SizeField sizeField = DRMP4SizeField::Bits32;

    [[nodiscard]] quint64 contentOffset() const
    {
        return range.offset + (sizeField == DRMP4SizeField::Bits64 ? 16 : 8);
    }
    bool operator==(const DRMP4Box&) const = default;
};

/// A type by its four characters.
[[nodiscard]] constexpr quint32 mp4Type(const char (&name)[5])
{
    quint32 type = 0;
    for (int index = 0; index < 4; ++index) {
        type = (type << 8U) | static_cast<unsigned char>(name[index]);
    }
    return type;
}
