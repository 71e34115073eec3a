#pragma once

#include "wizard/DRTransferPlan.h"

class DRLocalizedStrings;

/// The kinds of content, and what can be wrong with them, in the words of the window. Plain texts.
namespace DRMGKindTexts {

/// The name of a kind by its selection key, such as "Photos"; the key itself when it has none.
[[nodiscard]] QString name(const DRLocalizedStrings& strings, const QString& key);

/// The names, joined by ", ".
[[nodiscard]] QString names(const DRLocalizedStrings& strings, const QStringList& keys);

/// What is to be said of content in this state; empty when it is simply there.
[[nodiscard]] QString state(const DRLocalizedStrings& strings, DRKindContent::State state);

/// Why a kind was not moved.
[[nodiscard]] QString unmoved(const DRLocalizedStrings& strings, const DRTransferPlan::Unmoved& kind);

} // namespace DRMGKindTexts
