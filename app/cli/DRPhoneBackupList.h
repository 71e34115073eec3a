#pragma once

#include <vector>

#include <QJsonObject>
#include <QString>

#include "app/cli/DRCommandOutcome.h"
#include "model/phone_backup/DRPhoneBackup.h"

/// The phone backups of one folder as the command line shows them: the newest first, numbered from 1, also those that
/// cannot be put back.
struct DRPhoneBackupList {
    QString root;
    std::vector<DRPhoneBackup> backups;

    [[nodiscard]] static DRPhoneBackupList ofFolder(const QString& root);

    /// For people: a table, then the folder of each and what is wrong with it.
    [[nodiscard]] QString text() const;

    /// The values of the JSON document.
    [[nodiscard]] QJsonObject json() const;

    /// The backup that a PHONE-BACKUP argument means: a number of the list, the name of a backup, or a folder, which need
    /// not be in the list. Else why there is none.
    [[nodiscard]] DRResult<DRPhoneBackup> choose(const QString& argument) const;

    /// There is no phone backup, and what to do about it.
    [[nodiscard]] DRCommandOutcome none() const;
};
