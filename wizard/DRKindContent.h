#pragma once

#include <map>

#include <QString>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"

/// What a backup holds of one kind. A kind is named by its selection key: a data-type key, or "videos".
struct DRKindContent {
    enum class State {
        Loaded,
        Loading,
        NotSupported, ///< this program has no reader for it
        NotInBackup,
        NotAvailable, ///< it cannot be had on this computer, though nothing of the backup is lost
        Unreadable,
    };

    State state = State::Loaded;
    qint64 count = 0;                 ///< records or files
    quint64 bytes = 0;                ///< of files; 0 for kinds that are not files
    bool isFiles = false;             ///< whether `bytes` tells something
    std::map<QString, qint64> counts; ///< further counts by name, such as "messages"
    QString why;                      ///< for a person: when not available, and when unreadable and known

    /// What the entry's data type for the kind says. Complete unless it is still loading.
    [[nodiscard]] static DRKindContent of(const QString& key, const DRMigrateIPhoneBackupEntry& entry);

    /// The state alone.
    [[nodiscard]] static State stateOf(const QString& key, const DRMigrateBackupEntry& entry);

    /// The key of the iPhone's data type that carries the kind: "images" for "videos", else the key itself.
    [[nodiscard]] static QString dataTypeKeyOf(const QString& key);
};
