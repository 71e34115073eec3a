#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

class DRMGRestoreSequence;

/// What the steps of a `DRMGRestoreSequence` have in common.
class DRMGRestoreStep : public DRMGSequenceStep {
    Q_OBJECT

protected:
    using DRMGSequenceStep::DRMGSequenceStep;

    /// The sequence that the step belongs to.
    [[nodiscard]] DRMGRestoreSequence& restore() const;

    /// The text of the identifier, with "%1" and "%2" replaced by plain texts.
    [[nodiscard]] QString filled(const QString& identifier, const QString& first, const QString& second = {}) const;

    /// The kinds that these packets hold, each once, joined by ", ".
    [[nodiscard]] QString kindNames(const QStringList& packetIDs) const;
};
