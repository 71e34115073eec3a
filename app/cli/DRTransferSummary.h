#pragma once

#include <map>
#include <vector>

#include <QJsonObject>
#include <QStringList>

#include "app/cli/DRCommandOutcome.h"
#include "app/cli/DRTransferPlan.h"
#include "app/cli/DRTransferRun.h"

/// What became of everything that a transfer was to move.
struct DRTransferSummary {
    /// How much there was and how much reached the phone.
    struct Count {
        qint64 found = 0;
        qint64 written = 0;
    };

    struct Kind {
        qint64 flags = 0;
        Count records;
        std::map<QString, Count> furtherCounts; ///< by name, such as "calls" of contacts
        std::vector<DRMigrateSkippedItem> skipped;
        QStringList warnings; ///< losses that the phone's formats require
        QString note;         ///< of a kind that is no loss though it was not moved
    };

    std::map<QString, Kind> kinds; ///< under the packet ID or media key, or the selection key when it was not moved
    DRCommandOutcome outcome;
    int errorState = 0;
    int errorCode = 0;
    QString phoneBackupName; ///< empty when the phone was not backed up
    QString phoneBackupPath;

    /// Of a run that reached the closing page.
    [[nodiscard]] static DRTransferSummary
    make(const DRTransferPlan& plan, const DRMigrateIPhoneBackupEntry& backup, const DRTransferRun::Result& result);

    /// Of a transfer that ended before it wrote anything.
    [[nodiscard]] static DRTransferSummary ofRefusal(const DRCommandOutcome& outcome);

    /// The selection keys whose content reached the phone, as far as the flags tell.
    [[nodiscard]] static QStringList deliveredKeys(const DRTransferPlan& plan,
                                                   const DRMigrateAndroidBackupEntry& phoneEntry);

    /// For people: a table of kinds, every skipped item with its reason, and where the phone's backup lies.
    [[nodiscard]] QString text() const;

    /// The last line of the JSON output.
    [[nodiscard]] QJsonObject json() const;
};
