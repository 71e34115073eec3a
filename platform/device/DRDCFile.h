#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QVariantMap>

class DRDCFileProcessor;

/// One file on the computer that is to be copied to the phone, with what the copy needs to know of it.
class DRDCFile {
public:
    /// Names of the metadata values.
    static constexpr const char* kTargetFileName = "TargetFileName"; ///< text: the file name on the phone
    static constexpr const char* kTargetFileSize = "TargetFileSize"; ///< unsigned 64-bit: the file's size in bytes
    static constexpr const char* kTargetPath = "TargetPath"; ///< text: the path on the phone, relative to its storage

    /// A record of the file at `path`, with its size in bytes (0 when it is missing), kind 0.
    [[nodiscard]] static std::shared_ptr<DRDCFile> fileWithSourcePath(const QString& path);

    [[nodiscard]] const QString& sourcePath() const { return m_sourcePath; }
    [[nodiscard]] quint64 filesize() const { return m_filesize; }
    void setFilesize(quint64 bytes) { m_filesize = bytes; }

    /// What the file is, as a bit mask: 0x4 music, 0x8 and 0x20 videos, 0x10 photos, 0x40 playlists.
    [[nodiscard]] quint32 fileKind() const { return m_fileKind; }
    void setFileKind(quint32 kind) { m_fileKind = kind; }

    /// How the file is called on the phone and before people: its "TargetFileName", else the name of the file itself.
    [[nodiscard]] QString displayName() const;

    /// The value under the key; an invalid one when there is none.
    [[nodiscard]] QVariant metadataForKey(const QString& key) const { return m_metadata.value(key); }
    void setMetadata(const QVariant& value, const QString& key) { m_metadata.insert(key, value); }

    /// Processors replace what is copied; the last one added decides.
    void addFileProcessor(std::shared_ptr<const DRDCFileProcessor> processor);
    [[nodiscard]] const DRDCFileProcessor* fileProcessor() const;

private:
    QString m_sourcePath;
    quint64 m_filesize = 0;
    quint32 m_fileKind = 0;
    QVariantMap m_metadata;
    std::vector<std::shared_ptr<const DRDCFileProcessor>> m_processors;
};

using DRDCFilePointer = std::shared_ptr<DRDCFile>;
