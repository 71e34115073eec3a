#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

/// The first page. Next routes forward with the backups found at that moment; Cancel ends the wizard.
class DRMGSequenceStepWelcome final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepWelcome(const DRMGContext& context);

    /// Sends the sequence-started event, on every visit.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;
};
