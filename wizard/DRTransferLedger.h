#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

/// Remembers which kinds of which backup went to which phone, so that none is doubled unasked. A JSON file:
/// {"version": 1, "transfers": [{"phone", "iphone", "backupDate", "kind", "time", "turns"}]}. An iPhone is known by its backup's
/// GUID, else its serial number and name, else the backup's path; a backup of it by the date it was made. "turns" are the
/// times at which putting the phone's apps back took the kind from the phone, and brought it again, by turns; missing
/// when there are none.
class DRTransferLedger {
public:
    /// Reads the file; a missing one is an empty ledger.
    [[nodiscard]] static DRTransferLedger ofFile(const QString& path);

    /// Whether the file is there but cannot be read, so that nothing is known.
    [[nodiscard]] bool isDamaged() const { return m_isDamaged; }

    [[nodiscard]] const QString& path() const { return m_path; }

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

    /// The earliest time, not before `now`, that comes after everything that is known to have happened to this phone, in
    /// whole seconds: the date for a phone backup that is made now, by which `notePutBack` will tell what it holds.
    [[nodiscard]] QDateTime timeAfterLast(const QString& phone, const QDateTime& now) const;

    /// What becomes of kinds on a phone whose apps are put back.
    enum class PutBack { Begins, IsDone };

    /// Notes that apps of these kinds are put back to what they were on `backupDate`, and writes the file at once when
    /// that changes anything: what was moved after that date is not on the phone any more (from `IsDone` on), what was
    /// moved before is there again (from `Begins` on). In between both count as there: better to ask once too often than
    /// to double. `time` is that of the phone backup which was made before they are put back. False when the file
    /// is damaged, which then stays as it is, or cannot be written.
    [[nodiscard]] bool notePutBack(PutBack what,
                                   const QStringList& keys,
                                   const QString& phone,
                                   const QDateTime& backupDate,
                                   const QDateTime& time);

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
