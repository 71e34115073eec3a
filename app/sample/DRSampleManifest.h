#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <utility>
#include <vector>

/// One record of an iPhone backup's "Manifest.mbdb": a file or folder of the phone. See docs/formats/backup-folder.md.
struct DRSampleManifestRecord {
    /// The upper bits of `mode`, as on every Unix.
    static constexpr quint16 kFolder = 0040000;
    static constexpr quint16 kFile = 0100000;

    QString domain;        ///< such as "HomeDomain"
    QString path;          ///< relative to the domain, without a slash at either end; empty for the domain's own folder
    QByteArray dataHash;   ///< the SHA-1 of a file's content, 20 bytes; null for folders
    quint16 mode = 0;      ///< kind and permissions
    quint64 inode = 0;     ///< the file's number on the phone
    QDateTime modified;    ///< changed at the same moment
    QDateTime created;     ///< last read at the same moment
    quint64 sizeBytes = 0; ///< 0 for folders
    quint8 protectionClass = 0;
    std::vector<std::pair<QByteArray, QByteArray>> properties; ///< names and values, both any bytes
};

/// The six bytes at the start of the manifest: magic and version.
[[nodiscard]] QByteArray sampleManifestHeader();

/// The record as it stands in the manifest. Texts and byte strings must be shorter than 65,535 bytes.
[[nodiscard]] QByteArray encodeManifestRecord(const DRSampleManifestRecord& record);
