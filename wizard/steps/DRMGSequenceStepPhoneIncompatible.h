#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

/// The page for a phone whose system is too old. Next is disabled; Cancel ends the wizard.
class DRMGSequenceStepPhoneIncompatible final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepPhoneIncompatible(const DRMGContext& context);

    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// Sends the error event, on every visit.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    /// Names the phone.
    [[nodiscard]] QString bodyHtml() const;

    /// "contactssetup" ends the sequence as cancelled and asks the program for its own set-up of contacts.
    bool linkClicked(const QString& link) override;
};
