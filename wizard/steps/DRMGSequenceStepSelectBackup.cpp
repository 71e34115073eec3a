#include "wizard/steps/DRMGSequenceStepSelectBackup.h"

#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <utility>

using namespace Qt::StringLiterals;

DRMGSequenceStepSelectBackup::DRMGSequenceStepSelectBackup(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kSelectBackup,
                        .heading = u"IDD_STEPWIZ_SELECT_IPHONE_IDC_HEADER"_s,
                        .pageViewComponents = {u"select-backup"_s}})
{
}

void DRMGSequenceStepSelectBackup::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    m_backupList = migration().latestBackupList();
    selectRow(-1);
}

void DRMGSequenceStepSelectBackup::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGAnalyticsSendSeveralIPhonesDisplayedEvent(context().analytics);
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDC_BACK"_s);
}

bool DRMGSequenceStepSelectBackup::sequenceShouldChangeToNextStep()
{
    if (const auto entry = iPhoneBackupEntry()) {
        migration().gotoNextIPhoneStepWithDevice(activeDevice(), {entry});
    }
    return false;
}

bool DRMGSequenceStepSelectBackup::sequenceShouldCancel()
{
    migration().gotoStepForKey(DRMGStepKeys::kWelcome);
    return false;
}

void DRMGSequenceStepSelectBackup::selectRow(int row)
{
    const bool isInList = row >= 0 && std::cmp_less(row, m_backupList.size());
    m_selectedRow = isInList ? row : -1;
    if (isInList) {
        sequence()->parameters().setValue(DRMGSequence::kIPhoneBackupEntry,
                                          m_backupList[static_cast<std::size_t>(row)]);
    }
    setStateMask(isInList ? kStateAllEnabled : kStateNextDisabled);
    Q_EMIT contentChanged();
}
