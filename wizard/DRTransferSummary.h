#pragma once

#include <map>
#include <optional>
#include <vector>

#include "wizard/DRTransferPlan.h"
#include "wizard/DRTransferResult.h"

/// What became of everything that a transfer was to move.
struct DRTransferSummary {
    /// How much there was and how much reached the phone.
    struct Count {
        qint64 found = 0;
        qint64 written = 0;

        bool operator==(const Count&) const = default;
    };

    struct Kind {
        qint64 flags = 0;
        QString sourceKey; ///< the data-type key that it was fed from; null when it was not moved
        Count records;
        std::map<QString, Count> furtherCounts; ///< by name, such as "calls" of contacts
        std::vector<DRMigrateSkippedItem> skipped;
        QStringList warnings;                           ///< losses that the phone's formats require
        std::optional<DRTransferPlan::Unmoved> unmoved; ///< why it was not moved, when the plan left it out
        bool isUnwritten = false; ///< nothing failed, yet it did not reach the phone and nothing else tells why

        [[nodiscard]] bool isDelivered() const;

        /// How many things of it were lost: items, or the whole kind, unless that is no more than worth a note.
        [[nodiscard]] std::size_t lossCount() const;
    };

    std::map<QString, Kind> kinds; ///< under the packet ID or media key, or the selection key when it was not moved
    DRTransferResult result;

    /// Of a run that reached the closing page.
    [[nodiscard]] static DRTransferSummary
    make(const DRTransferPlan& plan, const DRMigrateIPhoneBackupEntry& backup, const DRTransferResult& result);

    [[nodiscard]] bool hasLosses() const;

    /// Whether an app of the phone was replaced or a file copied to it.
    [[nodiscard]] bool isPhoneChanged() const;

    /// The selection keys of the plan that a second transfer would double, as far as is known: what reached the phone.
    /// Files count only when all of a kind did or the run came to its end; with a phone that went away while its apps
    /// were written, all that goes into apps counts.
    [[nodiscard]] static QStringList keysToRemember(const DRTransferPlan& plan, const DRTransferResult& result);
};
