#pragma once

#include <array>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

/// The four text lines at the start of a packet file.
struct DRPacketHeader {
    QString magic;
    QString version;
    QString compression;      ///< as it stands: "1" compressed, "0" stored
    QString encryption;       ///< as it stands: "none", "AES-256"
    qint64 payloadOffset = 0; ///< the byte after the fourth line feed

    /// Whether line 3 reads as true: begins with a digit other than 0, or with Y, y, T or t (after blanks, a sign and
    /// zeros).
    [[nodiscard]] bool isCompressed() const;

    bool operator==(const DRPacketHeader&) const = default;
};

/// The header of the packet file, refused (none) unless the magic is "ANDROID BACKUP", the version is "1", no line is
/// empty and the encryption is not "AES-256" (which is logged).
[[nodiscard]] std::optional<DRPacketHeader> readPacketHeader(const QString& packet);

/// Real headers have some 24 bytes; a header that goes beyond this is refused.
constexpr qsizetype kLongestPacketHeader = 4096;

/// The same from the first bytes of a packet, of which `kLongestPacketHeader` are enough.
[[nodiscard]] std::optional<DRPacketHeader> packetHeaderFromBytes(const QByteArray& bytes);

/// One file of a packet's archive.
struct DRPacketFile {
    QString path;
    quint64 sizeBytes = 0;

    bool operator==(const DRPacketFile&) const = default;
};

/// What a packet holds, for people: header and files in archive order. None when the header is refused or the
/// compression is damaged. Streams; nothing is written.
struct DRPacketContents {
    DRPacketHeader header;
    std::vector<DRPacketFile> files;
};
[[nodiscard]] std::optional<DRPacketContents> packetContents(const QString& packet);
