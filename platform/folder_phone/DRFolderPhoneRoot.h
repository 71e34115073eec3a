#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <optional>

#include <QString>

/// The directory that is a phone, recognised again by what the file system knows of it, not by its path alone. A plain
/// value, for any thread.
class DRFolderPhoneRoot {
public:
    static inline const QString kPacketsFolder = QStringLiteral("packets");
    static inline const QString kStorageFolder = QStringLiteral("storage");

    /// None when there is no such directory. Links in the path are resolved once, here.
    [[nodiscard]] static std::optional<DRFolderPhoneRoot> at(const QString& folder);

    /// The absolute path without links.
    [[nodiscard]] const QString& path() const { return m_path; }

    /// 16 hexadecimal digits, made of the directory's inode and time of birth: a phone made anew at the same path, or a
    /// copy, is another phone; a moved one is the same. Where the file system knows no time of birth, of the inode and
    /// the path.
    [[nodiscard]] const QString& identifier() const { return m_identifier; }

    /// Whether the same directory is still at the path.
    [[nodiscard]] bool isThere() const;

    /// The directory, open; not open when it is gone.
    [[nodiscard]] DRFileDescriptor open() const;

private:
    QString m_path;
    QString m_identifier;
    dev_t m_device = 0;
    ino_t m_inode = 0;
};
