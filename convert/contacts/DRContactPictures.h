#pragma once

#include "model/iphone_backup/DRIPhoneBackupFiles.h"

#include <QByteArray>
#include <QHash>

#include <optional>

/// The pictures of an iPhone backup's contacts: "HomeDomain-Library/AddressBook/AddressBookImages.sqlitedb", table
/// `ABFullSizeImage`. Used by one thread.
class DRContactPictures {
public:
    /// Whether the backup holds any pictures, readable or not.
    [[nodiscard]] static bool areInBackup(const QString& backupPath);

    /// None when the backup does not hold the database or it cannot be opened.
    [[nodiscard]] static std::optional<DRContactPictures> open(const QString& backupPath,
                                                               const QString& temporaryFolder);

    /// Where each person's picture is, by the person's row number; of several the last counts. The pictures themselves
    /// are not read.
    struct Rows {
        QHash<qint64, qint64> rowByPerson;
        bool isComplete = true; ///< false when the table could not be read to its end
    };
    [[nodiscard]] Rows rows();

    /// The bytes of one picture; null when it cannot be read.
    [[nodiscard]] QByteArray pictureAt(qint64 row);

private:
    explicit DRContactPictures(DRIPhoneBackupFiles::OpenDatabase database);

    DRIPhoneBackupFiles::OpenDatabase m_database;
    DRStatement m_picture; ///< ends before its database
};
