#pragma once

#include <QJsonObject>

#include "app/cli/DRCommandOutcome.h"
#include "model/phone_backup/DRPhoneRestore.h"

/// The undo's plan and summary as the command line tells them.
namespace DRRestoreText {

/// Why a restore after this plan is refused; Done when it is not.
[[nodiscard]] DRCommandOutcome refusal(const DRPhoneRestorePlan& plan);

/// For people: which apps go back and which do not.
[[nodiscard]] QString text(const DRPhoneRestorePlan& plan);

/// The values of the plan's JSON line, without its type.
[[nodiscard]] QJsonObject json(const DRPhoneRestorePlan& plan);

/// How the command ends.
[[nodiscard]] DRCommandOutcome outcome(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result);

/// For people, once the phone was written: what became of each app, what stays on the phone, and how to undo this.
[[nodiscard]] QString text(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result, const QString& keptName);

/// The last line of the JSON output.
[[nodiscard]] QJsonObject json(const DRPhoneRestorePlan& plan,
                               const DRPhoneRestoreResult& result,
                               const QString& keptName,
                               const DRCommandOutcome& outcome);

/// The same of a restore that was refused before it began, or abandoned.
[[nodiscard]] QJsonObject jsonOfRefusal(const DRCommandOutcome& outcome);

} // namespace DRRestoreText
