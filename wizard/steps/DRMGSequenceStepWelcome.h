#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

/// The first page. Next routes forward with the backups found at that moment; Cancel ends the wizard.
class DRMGSequenceStepWelcome final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepWelcome(const DRMGContext& context);

    /// Sends the sequence-started event, on every visit.
    /// Has the music library read in the background, so that it is there when the music is listed.
    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;

    [[nodiscard]] QString bodyHtml() const;

    /// What to prepare, each with a link that carries a tooltip: "1" in the first, "2" in the second.
    [[nodiscard]] QString firstStepHtml() const;
    [[nodiscard]] QString secondStepHtml() const;
    [[nodiscard]] std::optional<DRMGTooltip> tooltipForLink(const QString& link) const override;

private:
    [[nodiscard]] QString stepHtml(const QStringList& identifiers, const QString& link) const;
};
