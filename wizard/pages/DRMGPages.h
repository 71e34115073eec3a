#pragma once

#include "wizard/pages/DRMGPage.h"

class DRSequenceStep;

/// Which view belongs to which step.
namespace DRMGPages {

/// A new view of a step of the wizard or of putting apps back, owned by the caller; null for a step of another sequence.
[[nodiscard]] QWidget* pageFor(DRSequenceStep& step, const DRMGPageTools& tools);

} // namespace DRMGPages
