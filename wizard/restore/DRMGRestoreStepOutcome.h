#pragma once

#include "wizard/restore/DRMGRestoreRows.h"
#include "wizard/restore/DRMGRestoreStep.h"

#include <optional>

/// The closing page of the undo: what came of it, for each app, and what to do now. After a failure Cancel, labelled
/// Back, leads to the choice again; Done ends the sequence.
class DRMGRestoreStepOutcome final : public DRMGRestoreStep {
    Q_OBJECT

public:
    struct Outcome {
        DRPhoneRestorePlan plan;
        std::optional<DRPhoneRestoreResult> result; ///< none when the check has found the phone backup damaged
        QString keptName;                           ///< of the new phone backup
        bool isNoted = true;                        ///< whether the ledger knows of it
        bool areFilesLeft = false;                  ///< in the working folder
    };

    explicit DRMGRestoreStepOutcome(const DRMGContext& context);

    /// Set before the page is shown.
    void setOutcome(Outcome outcome);

    [[nodiscard]] QString localizedTitle() const override;
    void stepWillAppearInDirection(DRSequenceDirection direction) override;

    /// After a failure: shows the choice again.
    [[nodiscard]] bool sequenceShouldCancel() override;

    /// Whether something that should be back is not.
    [[nodiscard]] bool hasFailed() const;

    /// What happened, and after a failure what to do; HTML.
    [[nodiscard]] QString bodyHtml() const;

    /// What a person should know beside that; plain texts.
    [[nodiscard]] QStringList remarks() const;

    /// The phone backup that was made before, and its folder; empty when there is none. Plain texts.
    [[nodiscard]] QString keptText() const;
    [[nodiscard]] QString keptPath() const;

    /// The picture of the outcome, and what screen readers say of it.
    [[nodiscard]] QString imageName() const;
    [[nodiscard]] QString imageText() const;

    /// What became of the apps, under a title.
    [[nodiscard]] QString rowsTitle() const;
    [[nodiscard]] const std::vector<DRMGSummaryRow>& rows() const { return m_rows; }

private:
    struct EndingText;
    [[nodiscard]] const EndingText& endingText() const;

    Outcome m_outcome;
    std::vector<DRMGSummaryRow> m_rows;
};
