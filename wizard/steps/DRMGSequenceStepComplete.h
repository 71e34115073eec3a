#pragma once

#include "wizard/steps/DRMGSequenceStep.h"
#include "wizard/steps/DRMGSummaryRow.h"

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

    /// What to do now, and a note that points to the phone's backup once the phone may have changed.
    [[nodiscard]] QString bodyHtml() const;
    [[nodiscard]] QString noteHtml() const;

    /// The picture of the outcome, and what screen readers say of it.
    [[nodiscard]] QString imageName() const;
    [[nodiscard]] QString imageText() const;

    /// What was moved and what was not, kind by kind, under a title; plain texts. Made when the page appears.
    [[nodiscard]] QString summaryTitle() const;
    [[nodiscard]] const std::vector<DRMGSummaryRow>& summaryRows() const { return m_summaryRows; }

    /// What a person should know beside that: why it failed, that something was lost, each loss that the summary leaves
    /// out, or that the transfer could not be remembered. Plain texts; may be many.
    [[nodiscard]] const QStringList& remarks() const { return m_remarks; }

    /// "vorn" asks the program to open the support page; "backup" closes the wizard and asks for the phone's backups.
    bool linkClicked(const QString& link) override;

private:
    [[nodiscard]] QString backupHtml(const QString& identifier) const;
    void makeSummary();
    void addLossesLeftOut();

    ErrorState m_errorState = ErrorState::Success;
    std::vector<DRMGSummaryRow> m_summaryRows;
    QStringList m_remarks;
};
