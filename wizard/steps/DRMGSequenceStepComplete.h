#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

/// The closing page with the outcome. Done ends the wizard.
class DRMGSequenceStepComplete final : public DRMGSequenceStep {
    Q_OBJECT

public:
    /// The values are those of the command line's JSON.
    enum class ErrorState {
        Success = 0,
        BackupFailed = 1,  ///< before anything reached the phone
        RestoreFailed = 2, ///< while restoring or copying: the phone may hold a part
    };
    Q_ENUM(ErrorState)

    explicit DRMGSequenceStepComplete(const DRMGContext& context);

    /// Another heading for a failure.
    [[nodiscard]] QString localizedTitle() const override;

    /// Sends the error event of a failure, on every visit.
    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// Set by the transfer before the page is shown.
    [[nodiscard]] ErrorState errorState() const { return m_errorState; }
    void setErrorState(ErrorState state);

    /// The name of the phone backup made for the transfer; empty when none was made.
    [[nodiscard]] QString backupName() const;

private:
    ErrorState m_errorState = ErrorState::Success;
};
