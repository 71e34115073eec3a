#pragma once

#include <map>
#include <optional>

#include <QByteArray>
#include <QString>

/// What a packet holds as far as its app is concerned: the entries of its archive. How it is compressed, the order of the
/// entries and their times do not count, so that a packet is equal to the one that the phone makes after it was
/// restored.
struct DRPacketFingerprint {
    std::map<QByteArray, QByteArray> entries; ///< by path in the archive: the kind, and a digest of a file's content

    bool operator==(const DRPacketFingerprint&) const = default;
};

/// Reads the packet file to its end: header, compression, archive. None when one of them is refused, damaged or
/// truncated. Streams; nothing is written. Takes as long as reading and inflating the whole packet does.
[[nodiscard]] std::optional<DRPacketFingerprint> packetFingerprint(const QString& packet);
