#pragma once

#include "tests/app/gui/DRAccessibleTree.h"
#include "tests/app/gui/DRWizardRun.h"

#include <QStringList>

/// What is wrong with the page that the window shows, for screen readers and the keyboard: names, roles, the order in
/// which the page is read and in which Tab goes, keys that two buttons share. Empty when nothing is. Moves the focus.
[[nodiscard]] QStringList accessibilityFaults(const DRAccessibleTree& tree, const DRWindowRun& run);
