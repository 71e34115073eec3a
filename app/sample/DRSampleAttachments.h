#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

class DRSampleIPhoneBackup;

/// Makes the files that go with messages and adds them to a backup. Of each kind there are a few, which messages share in
/// large samples: making them takes longer than writing them.
class DRSampleAttachments {
public:
    /// What is known of a kind of file; a null text where nothing is.
    struct Kind {
        QStringView name;
        QStringView mimeType;
        QStringView uti; ///< the iPhone's name of the type
        QStringView extension;
        quint64 variants;
        QByteArray (*make)(quint64 variant);
    };

    /// The kind of that name, which must be one of: jpeg, png, gif, movie, lateMovie (its description comes last), wave,
    /// amr, pdf, vcard, letter (plain text), empty, unknown.
    [[nodiscard]] static const Kind& kind(QStringView name);

    /// The backup must outlive this object.
    explicit DRSampleAttachments(DRSampleIPhoneBackup& backup);

    /// Adds a file of the kind at that path on the phone, which begins with "~/" or "/var/mobile/" or is relative to the
    /// latter. Answers its size in bytes, or nothing on failure.
    [[nodiscard]] std::optional<qint64> add(const QString& path, QStringView kindName);

private:
    struct Files {
        std::vector<QByteArray> variants;
        std::size_t used = 0;
    };

    DRSampleIPhoneBackup& m_backup;
    QHash<QString, Files> m_files;
};
