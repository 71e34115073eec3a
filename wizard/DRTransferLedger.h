#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

/// Remembers which kinds of which backup went to which phone, so that none is doubled unasked. A JSON file:
/// {"version": 1, "transfers": [{"phone", "iphone", "backupDate", "kind", "time"}]}. An iPhone is known by its backup's
/// GUID, else its serial number and name, else the backup's path; a backup of it by the date it was made.
class DRTransferLedger {
public:
    /// Reads the file; a missing one is an empty ledger.
    [[nodiscard]] static DRTransferLedger ofFile(const QString& path);

    /// Whether the file is there but cannot be read, so that nothing is known.
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

    /// Which of the kinds (selection keys) went from this backup to this phone before.
    [[nodiscard]] QStringList
    repeatedKinds(const QStringList& keys, const DRMigrateIPhoneBackupEntry& backup, const QString& phone) const;

    /// Which of the kinds went from another backup of the same iPhone to this phone before.
    [[nodiscard]] QStringList
    kindsOfOtherBackups(const QStringList& keys, const DRMigrateIPhoneBackupEntry& backup, const QString& phone) const;

    /// Enters the kinds and writes the file at once. A damaged file is kept beside it with ".damaged" appended. False
    /// when it cannot be written.
    [[nodiscard]] bool record(const QStringList& keys,
                              const DRMigrateIPhoneBackupEntry& backup,
                              const QString& phone,
                              const QDateTime& now);

    /// Of what was entered since the file was read only these kinds stay, and those of them that were not are entered
    /// now. Writes the file at once; false when it cannot be written.
    [[nodiscard]] bool settle(const QStringList& keys,
                              const DRMigrateIPhoneBackupEntry& backup,
                              const QString& phone,
                              const QDateTime& now);

private:
    explicit DRTransferLedger(QString path) : m_path(std::move(path)) {}

    [[nodiscard]] bool write();

    QString m_path;
    QJsonArray m_transfers;
    qsizetype m_countInFile = 0; ///< how many of the transfers stood in the file when it was read
    bool m_isDamaged = false;
};
