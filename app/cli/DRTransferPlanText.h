#pragma once

#include <QJsonObject>

#include "app/cli/DRCommandOutcome.h"
#include "wizard/DRTransferPlan.h"

/// A transfer's plan as the command line tells it.
namespace DRTransferPlanText {

/// Why the kind does not move, for a person.
[[nodiscard]] QString why(const DRTransferPlan::Unmoved& kind);

/// Why a transfer after this plan would be refused; Done when it would not. A repeat is no reason when it is allowed.
[[nodiscard]] DRCommandOutcome refusal(const DRTransferPlan& plan, DRTransferPlan::Repeats repeats);

/// What a person should know before the start, such as kinds that are left out.
[[nodiscard]] QStringList notes(const DRTransferPlan& plan);

/// For people: a table of what moves where, and the notes.
[[nodiscard]] QString text(const DRTransferPlan& plan);

/// The values of the plan's JSON line, without its type.
[[nodiscard]] QJsonObject json(const DRTransferPlan& plan);

} // namespace DRTransferPlanText
