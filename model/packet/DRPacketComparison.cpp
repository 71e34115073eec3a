#include "model/packet/DRPacketComparison.h"

#include "model/packet/DRPacketIo.h"
#include "model/packet/DRPacketPayload.h"

#include <algorithm>

namespace {

constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

} // namespace

bool packetHoldsArchive(const QString& packet, const DRFileDescriptor& archive)
{
    std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet, makeReadBackInflater());
    if (!payload) {
        return false;
    }
    const auto packed = std::make_unique_for_overwrite<char[]>(kBufferBytes);
    const auto original = std::make_unique_for_overwrite<char[]>(kBufferBytes);
    for (quint64 offset = 0;;) {
        const auto packedSize = payload->read({packed.get(), kBufferBytes});
        const auto originalSize = DRPacketIo::readAt(archive, {original.get(), kBufferBytes}, offset);
        if (!packedSize || !originalSize || *packedSize != *originalSize) {
            return false;
        }
        if (!std::equal(packed.get(), packed.get() + *packedSize, original.get())) {
            return false;
        }
        if (*packedSize == 0) {
            return payload->isAtFileEnd();
        }
        offset += *packedSize;
    }
}
