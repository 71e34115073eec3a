#pragma once

#include "wizard/steps/DRMGSequenceStep.h"

/// The page that says why a new iPhone backup is needed. Next looks for backups again and routes forward; Cancel routes
/// backward.
class DRMGSequenceStepNewBackupNeeded final : public DRMGSequenceStep {
    Q_OBJECT

public:
    enum class Reason { None = 0, NoBackup = 1, Encrypted = 2, SystemTooOld = 3 };
    Q_ENUM(Reason)

    explicit DRMGSequenceStepNewBackupNeeded(const DRMGContext& context);

    /// The heading tells the reason; empty without one.
    [[nodiscard]] QString localizedTitle() const override;

    /// Sends the error event of the reason, on every visit.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;
    [[nodiscard]] bool sequenceShouldCancel() override;

    /// What is wrong and how to make a backup that helps; empty without a reason.
    [[nodiscard]] QString reasonHtml() const;
    [[nodiscard]] QString noteHtml() const;

    /// The picture of the reason.
    [[nodiscard]] QString imageName() const;

    /// Set by the routing before the page is shown.
    [[nodiscard]] Reason backupNeededReason() const { return m_backupNeededReason; }
    void setBackupNeededReason(Reason reason);

private:
    Reason m_backupNeededReason = Reason::None;
};
