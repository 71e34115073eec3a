#include "model/packet/DRPacketArchiveSource.h"
#include "model/packet/DRPacketHeader.h"
#include "model/packet/DRPacketPayload.h"
#include "model/packet/DRTarReader.h"

#include <QFile>

std::optional<DRPacketContents> packetContents(const QString& packet)
{
    std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet);
    if (!payload) {
        return std::nullopt;
    }
    DRPacketArchiveSource source(*payload);
    DRTarReader reader([&source] { return source.next(); });
    DRPacketContents contents{.header = payload->header(), .files = {}};
    while (const auto entry = reader.nextEntry()) {
        if (entry->kind == DRTarReader::Kind::File) {
            contents.files.push_back({QFile::decodeName(entry->path), entry->sizeBytes});
        }
    }
    return source.readsToItsEnd() ? std::optional(contents) : std::nullopt;
}
