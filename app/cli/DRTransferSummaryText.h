#pragma once

#include <QJsonObject>

#include "app/cli/DRCommandOutcome.h"
#include "wizard/DRTransferSummary.h"

/// A transfer's summary as the command line tells it.
namespace DRTransferSummaryText {

/// How the command ends.
[[nodiscard]] DRCommandOutcome outcome(const DRTransferSummary& summary);

/// For people: a table of kinds, every skipped item with its reason, and where the phone's backup lies.
[[nodiscard]] QString text(const DRTransferSummary& summary);

/// The last line of the JSON output.
[[nodiscard]] QJsonObject json(const DRTransferSummary& summary, const DRCommandOutcome& outcome);

/// The same of a transfer that ended before it wrote anything.
[[nodiscard]] QJsonObject jsonOfRefusal(const DRCommandOutcome& outcome);

} // namespace DRTransferSummaryText
