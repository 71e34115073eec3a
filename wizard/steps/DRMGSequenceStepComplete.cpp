#include "wizard/steps/DRMGSequenceStepComplete.h"

#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

DRMGSequenceStepComplete::DRMGSequenceStepComplete(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kComplete,
                        .heading = u"IDD_STEPWIZ_FINISH_IDC_HEADER"_s,
                        .pageViewComponents = {u"finished"_s}})
{
}

QString DRMGSequenceStepComplete::localizedTitle() const
{
    return m_errorState == ErrorState::Success ? DRMGSequenceStep::localizedTitle()
                                               : text(u"IDD_STEPWIZ_FINISH_FAILED_IDC_HEADER"_s);
}

void DRMGSequenceStepComplete::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    if (m_errorState != ErrorState::Success) {
        DRMGAnalyticsSendErrorEvent(context().analytics, m_errorState == ErrorState::BackupFailed
                                                             ? DRMGErrorEvent::BackupFailed
                                                             : DRMGErrorEvent::RestoreFailed);
    }
    setStateMask(kStateClosing | kStateNextShown | kStateNextEnabled);
    Q_EMIT contentChanged();
}

void DRMGSequenceStepComplete::setErrorState(ErrorState state)
{
    m_errorState = state;
    Q_EMIT contentChanged();
}

QString DRMGSequenceStepComplete::backupName() const
{
    return sequence()->parameters().value<QString>(DRMGSequence::kBackupName);
}
