#pragma once

#include <map>

#include <QString>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

/// What a loaded backup holds of one kind.
struct DRKindContent {
    enum class State { Loaded, NotSupported, NotInBackup, NotAvailable, Unreadable };

    State state = State::Loaded;
    qint64 count = 0;                 ///< records or files
    quint64 bytes = 0;                ///< of files; 0 for kinds that are not files
    bool isFiles = false;             ///< whether `bytes` tells something
    std::map<QString, qint64> counts; ///< further counts by name, such as "messages"
    QString why;                      ///< for a person: when not available, and when unreadable and known

    /// What the entry's data type for the kind says; the entry has been loaded.
    [[nodiscard]] static DRKindContent of(const QString& key, const DRMigrateIPhoneBackupEntry& entry);
};
