#include "wizard/steps/DRMGSequenceStepNewBackupNeeded.h"

#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Reason = DRMGSequenceStepNewBackupNeeded::Reason;

struct ReasonPage {
    Reason reason;
    const char16_t* heading;
    DRMGErrorEvent event;
};

constexpr std::array kReasonPages{
    ReasonPage{Reason::NoBackup, u"IDD_STEPWIZ_ITUNESBACKUP_MISSING_IDC_HEADER", DRMGErrorEvent::NoBackup},
    ReasonPage{Reason::Encrypted, u"IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_HEADER", DRMGErrorEvent::EncryptedBackup},
    ReasonPage{Reason::SystemTooOld, u"IDD_STEPWIZ_ITUNESBACKUP_INCOMPATIBLE_IDC_HEADER", DRMGErrorEvent::SystemTooOld},
};

/// The page of the reason; null when there is none.
const ReasonPage* pageOf(Reason reason)
{
    const auto* const found = std::ranges::find(kReasonPages, reason, &ReasonPage::reason);
    return found == kReasonPages.end() ? nullptr : found;
}

} // namespace

DRMGSequenceStepNewBackupNeeded::DRMGSequenceStepNewBackupNeeded(const DRMGContext& context)
    : DRMGSequenceStep(
          context, {.key = DRMGStepKeys::kNewBackupNeeded, .heading = {}, .pageViewComponents = {u"backup-needed"_s}})
{
}

QString DRMGSequenceStepNewBackupNeeded::localizedTitle() const
{
    const ReasonPage* const page = pageOf(m_backupNeededReason);
    return page == nullptr ? QString() : text(QString::fromUtf16(page->heading));
}

void DRMGSequenceStepNewBackupNeeded::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    if (const ReasonPage* const page = pageOf(m_backupNeededReason)) {
        DRMGAnalyticsSendErrorEvent(context().analytics, page->event);
    }
}

bool DRMGSequenceStepNewBackupNeeded::sequenceShouldChangeToNextStep()
{
    migration().gotoNextIPhoneStepWithDevice(activeDevice(), migration().latestBackupList());
    return false;
}

bool DRMGSequenceStepNewBackupNeeded::sequenceShouldCancel()
{
    migration().gotoPreviousIPhoneStep();
    return false;
}

void DRMGSequenceStepNewBackupNeeded::setBackupNeededReason(Reason reason)
{
    m_backupNeededReason = reason;
    Q_EMIT contentChanged();
}
