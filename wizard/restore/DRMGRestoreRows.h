#pragma once

#include "model/phone_backup/DRPhoneRestore.h"
#include "wizard/steps/DRMGSummaryRow.h"

class DRLocalizedStrings;

/// What became of the apps that hold one kind of content, for the closing page of the undo.
namespace DRMGRestoreRows {

/// The name of the kind that the packet holds; the packet's own when that is unknown.
[[nodiscard]] QString nameOf(const QString& packetID, const DRLocalizedStrings& strings);

/// One row per kind, in the order of work. What should be back and is not counts as lost; the reasons of what stayed as it
/// was are told, too.
[[nodiscard]] std::vector<DRMGSummaryRow>
of(const DRPhoneRestorePlan& plan, const DRPhoneRestoreResult& result, const DRLocalizedStrings& strings);

} // namespace DRMGRestoreRows
