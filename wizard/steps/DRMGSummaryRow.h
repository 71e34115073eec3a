#pragma once

#include "wizard/DRTransferSummary.h"

class DRLocalizedStrings;

/// What became of one kind of content, for the closing page. Plain texts.
struct DRMGSummaryRow {
    QString imageName;     ///< of the kind's picture; empty for a kind without
    QString name;          ///< of the kind, such as "Contacts and calls"
    QString outcome;       ///< such as "Moved: 118 of 120", or why it was not moved
    QStringList counts;    ///< of what belongs to it, such as "Calls: 150 of 150"
    QStringList losses;    ///< what was not moved, with the reasons; of many things for one reason only the first ones
    QStringList allLosses; ///< each of them, where `losses` leaves some out
    QStringList notes;     ///< what the phone's formats cannot hold
    bool isLoss = false;   ///< whether anything of it was lost

    bool operator==(const DRMGSummaryRow&) const = default;

    /// One row per kind, in the order in which kinds are offered. A kind that goes into several of the phone's apps has
    /// one row, with the figures of the app that got the most.
    [[nodiscard]] static std::vector<DRMGSummaryRow>
    rowsOf(const DRTransferSummary& summary, const DRTransferPlan& plan, const DRLocalizedStrings& strings);
};
