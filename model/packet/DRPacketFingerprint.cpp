#include "model/packet/DRPacketFingerprint.h"

#include "model/packet/DRPacketArchiveSource.h"
#include "model/packet/DRTarReader.h"

#include <QCryptographicHash>

namespace {

/// The digest of the current entry's content; none when the archive breaks off in it.
std::optional<QByteArray> digestOfContent(DRTarReader& reader, quint64 sizeBytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    quint64 position = 0;
    while (const auto piece = reader.nextPiece()) {
        if (piece->offset != position) {
            // A gap of a sparse file may be longer than any disk: its place counts, its zeros are not gone through.
            hash.addData(QByteArray::number(piece->offset));
        }
        hash.addData({piece->bytes.data(), static_cast<qsizetype>(piece->bytes.size())});
        position = piece->offset + piece->bytes.size();
    }
    hash.addData(QByteArray::number(sizeBytes));
    return reader.isContentWhole() ? std::optional(hash.result()) : std::nullopt;
}

} // namespace

std::optional<DRPacketFingerprint> packetFingerprint(const QString& packet)
{
    std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet);
    if (!payload) {
        return std::nullopt;
    }
    DRPacketArchiveSource source(*payload);
    DRTarReader reader([&source] { return source.next(); });
    DRPacketFingerprint fingerprint;
    while (const auto entry = reader.nextEntry()) {
        const auto digest = digestOfContent(reader, entry->sizeBytes);
        if (!digest) {
            return std::nullopt;
        }
        fingerprint.entries[entry->path] = QByteArray::number(static_cast<int>(entry->kind)) + *digest;
    }
    const bool isArchiveWhole = !reader.isDamaged() || source.isEmpty(); // no byte at all is no archive to the reader
    return isArchiveWhole && source.readsToItsEnd() ? std::optional(fingerprint) : std::nullopt;
}
