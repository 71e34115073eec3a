#include "wizard/restore/DRMGRestoreStepPutBack.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "wizard/restore/DRMGRestoreKeys.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepOutcome.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRMGRestoreStepPutBack::Phase;

constexpr std::chrono::milliseconds kFolderInterval{100};

constexpr std::array<std::pair<Phase, const char16_t*>, 4> kPhaseTexts{{
    {Phase::Check, u"wizard_restore_phase_check"},
    {Phase::BackUp, u"wizard_restore_phase_back_up"},
    {Phase::Restore, u"wizard_phase_restore"},
    {Phase::Verify, u"wizard_restore_phase_verify"},
}};

Phase phaseOf(DRPhoneRestore::Phase phase)
{
    switch (phase) {
    case DRPhoneRestore::Phase::BackUp:
        return Phase::BackUp;
    case DRPhoneRestore::Phase::Restore:
        return Phase::Restore;
    case DRPhoneRestore::Phase::Verify:
        break;
    }
    return Phase::Verify;
}

} // namespace

DRMGRestoreStepPutBack::DRMGRestoreStepPutBack(const DRMGContext& context, std::function<bool()> isWorkingFolderInUse)
    : DRMGRestoreStep(context,
                      {.key = DRMGRestoreKeys::kPutBack,
                       .heading = u"wizard_restore_put_back_header"_s,
                       .pageViewComponents = {u"put-back"_s}}),
      m_isWorkingFolderInUse(std::move(isWorkingFolderInUse))
{
}

void DRMGRestoreStepPutBack::setWork(const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan)
{
    m_phone = phone;
    m_plan = plan;
}

void DRMGRestoreStepPutBack::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGRestoreStep::stepWillAppearInDirection(direction);
    m_fraction.reset();
    m_areFilesLeft = false;
    setStateMask(kStateNextDisabled);
}

void DRMGRestoreStepPutBack::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGRestoreStep::stepDidAppearInDirection(direction);
    DRPhoneRestore::Observer& observer = *this; // a private base, which std::make_unique cannot see
    m_undo = std::make_unique<DRPhoneUndo>(
        DRPhoneUndo::Setup{.services = context().services,
                           .ledgerPath = context().ledgerPath,
                           .applicationVersion = context().applicationVersion,
                           .filesAreLeft =
                               [this] {
                                   m_areFilesLeft = true;
                                   qCWarning(lcMigrate)
                                       << "the working folder could not be emptied; it may hold private content";
                               }},
        observer);
    setPhase(Phase::Check);
    m_undo->check(m_plan, [this](const DRPhoneRestorePlan& checked) { didCheck(checked); });
}

void DRMGRestoreStepPutBack::stepWillDisappear()
{
    m_startTimer.reset();
    if (m_undo) {
        m_undo->cancel();
    }
    setPhase(Phase::NotStarted);
    DRMGRestoreStep::stepWillDisappear();
}

QString DRMGRestoreStepPutBack::phaseText() const
{
    const auto* const found = std::ranges::find(kPhaseTexts, m_phase, &std::pair<Phase, const char16_t*>::first);
    return found == kPhaseTexts.end() ? QString() : text(QString::fromUtf16(found->second));
}

QString DRMGRestoreStepPutBack::timeText() const
{
    if (m_fraction.value_or(0.0) <= 0.0) {
        return {};
    }
    const auto passed = static_cast<double>(m_start.msecsTo(context().services.clock.now())) / 1000.0;
    const double left = passed * (1.0 - *m_fraction) / *m_fraction;
    return text(u"IDD_STEPWIZ_TRANSFER_IDC_TIME_REMAINING"_s)
        .replace(u"%s"_s, DRMGSequenceStepTransfer::timeText(left));
}

QString DRMGRestoreStepPutBack::noteText() const
{
    return text(isWriting() ? u"wizard_restore_note_writing"_s : u"wizard_restore_note_reading"_s);
}

QString DRMGRestoreStepPutBack::progressName() const
{
    return text(u"wizard_name_restore_progress"_s);
}

void DRMGRestoreStepPutBack::phaseChanged(DRPhoneRestore::Phase phase)
{
    if (phase == DRPhoneRestore::Phase::Restore) {
        setStateMask(kStateUserGoesOn); // from here on the phone changes: there is no way back
    }
    setPhase(phaseOf(phase));
}

void DRMGRestoreStepPutBack::progressed(double fraction)
{
    m_fraction = fraction;
    Q_EMIT progressChanged();
}

void DRMGRestoreStepPutBack::ended(const DRPhoneRestoreResult& result)
{
    finish(result);
}

void DRMGRestoreStepPutBack::didCheck(const DRPhoneRestorePlan& checked)
{
    m_plan = checked;
    if (m_plan.obstacle() != DRPhoneRestorePlan::Obstacle::None) {
        finish(std::nullopt);
        return;
    }
    startWork();
}

/// A transfer that has just ended may still be emptying the folder, and would take away what the work puts there.
void DRMGRestoreStepPutBack::startWork()
{
    if (m_isWorkingFolderInUse && m_isWorkingFolderInUse()) {
        m_startTimer = context().timers.runAfter(kFolderInterval, [this] { startWork(); });
        return;
    }
    m_start = context().services.clock.now();
    m_fraction = 0.0;
    m_undo->start(m_phone, m_plan);
}

void DRMGRestoreStepPutBack::setPhase(Phase phase)
{
    if (m_phase != phase) {
        m_phase = phase;
        Q_EMIT contentChanged();
        Q_EMIT workPhaseChanged();
    }
}

void DRMGRestoreStepPutBack::finish(const std::optional<DRPhoneRestoreResult>& result)
{
    restore().outcome().setOutcome({.plan = m_plan,
                                    .result = result,
                                    .keptName = m_undo->keptName(),
                                    .isNoted = m_undo->isNoted(),
                                    .areFilesLeft = m_areFilesLeft});
    sequence()->next();
}
