#pragma once

#include <optional>

#include <QString>

/// What a phone's phone.json tells of it. The values here are those of keys that are missing.
struct DRFolderPhoneDescription {
    QString marketingName = QStringLiteral("Android phone");
    quint32 androidBaseVersion = 4;
    QString appProductRevision = QStringLiteral("1");
    quint64 memoryUsableCapacity = quint64{16} * 1024 * 1024 * 1024; ///< bytes

    bool operator==(const DRFolderPhoneDescription&) const = default;

    /// Reads phone.json in this folder. A key that is missing, of another type, negative or empty takes its default;
    /// the name's default is the folder's. A missing file is one without keys. None when the file cannot be read, is
    /// larger than 1 MiB or holds no JSON object.
    [[nodiscard]] static std::optional<DRFolderPhoneDescription> readFrom(const QString& folder);
};
