#pragma once

#include "platform/core/DRTimerSource.h"
#include "wizard/DRPhoneUndo.h"
#include "wizard/restore/DRMGRestoreStep.h"

#include <QDateTime>

#include <functional>
#include <optional>

/// The step that puts the apps back: checks the phone backup, keeps the phone's present state, writes and verifies. It
/// begins as soon as it is shown and leads to the outcome. Cancel can be pressed until the phone is written.
class DRMGRestoreStepPutBack final : public DRMGRestoreStep, private DRPhoneRestore::Observer {
    Q_OBJECT

public:
    enum class Phase { NotStarted, Check, BackUp, Restore, Verify };
    Q_ENUM(Phase)

    /// `isWorkingFolderInUse`: the work does not begin before this is over; may be unset.
    DRMGRestoreStepPutBack(const DRMGContext& context, std::function<bool()> isWorkingFolderInUse);

    /// What is to be done when the step is shown next: a plan without an obstacle, for this phone.
    void setWork(const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan);

    void stepWillAppearInDirection(DRSequenceDirection direction) override;
    void stepDidAppearInDirection(DRSequenceDirection direction) override;

    /// Ends the work without a further word, unless the phone is written, which must not be left.
    void stepWillDisappear() override;

    [[nodiscard]] Phase phase() const { return m_phase; }
    [[nodiscard]] bool isRunning() const { return m_phase != Phase::NotStarted; }

    /// Whether the phone is written or what was written is verified: too late to stop.
    [[nodiscard]] bool isWriting() const { return m_phase == Phase::Restore || m_phase == Phase::Verify; }

    /// The share of the work that is done, 0 to 1; none while it cannot be known.
    [[nodiscard]] std::optional<double> progressFraction() const { return m_fraction; }

    /// What the page shows: the phase, the time remaining, and what the person is to do. Plain texts.
    [[nodiscard]] QString phaseText() const;
    [[nodiscard]] QString timeText() const;
    [[nodiscard]] QString noteText() const;

    /// For screen readers.
    [[nodiscard]] QString progressName() const;

    [[nodiscard]] QString imageName() const { return QStringLiteral("migrate_connect_phone"); }

Q_SIGNALS:
    void workPhaseChanged();
    void progressChanged();

private:
    void phaseChanged(DRPhoneRestore::Phase phase) override;
    void progressed(double fraction) override;
    void ended(const DRPhoneRestoreResult& result) override;

    void didCheck(const DRPhoneRestorePlan& checked);
    void startWork();
    void setPhase(Phase phase);
    void finish(const std::optional<DRPhoneRestoreResult>& result);

    std::function<bool()> m_isWorkingFolderInUse;
    std::unique_ptr<DRTimer> m_startTimer;
    DRDCDevicePointer m_phone;
    DRPhoneRestorePlan m_plan;
    std::unique_ptr<DRPhoneUndo> m_undo;
    Phase m_phase = Phase::NotStarted;
    QDateTime m_start; ///< of what the fraction measures
    std::optional<double> m_fraction;
    bool m_areFilesLeft = false; ///< in the working folder
};
