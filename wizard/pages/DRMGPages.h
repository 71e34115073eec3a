#pragma once

#include "wizard/pages/DRMGPage.h"

class DRSequenceStep;

/// Which view belongs to which step.
namespace DRMGPages {

/// A new view of the wizard's step, owned by the caller; null for a step of another sequence.
[[nodiscard]] QWidget* pageFor(DRSequenceStep& step, const DRMGPageTools& tools);

} // namespace DRMGPages
