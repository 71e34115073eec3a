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
    DRMGErrorEvent event;
    const char16_t* imageName;
    const char16_t* prefix;     ///< of the identifiers of its texts
    const char16_t* firstText;  ///< identifiers without the prefix from here on
    const char16_t* mainFormat; ///< kept: three line breaks before the last part for a missing backup, two for others
    const char16_t* mainTexts;  ///< separated by blanks
};

constexpr std::array kReasonPages{
    ReasonPage{Reason::NoBackup, DRMGErrorEvent::NoBackup, u"tarvex_alert", u"IDD_STEPWIZ_ITUNESBACKUP_MISSING_IDC_",
               u"STATIC", u"%@<br /><br />%@<br />%@<br />%@<br />%@<br /><br /><br />%@",
               u"TEXT1 TEXT2 TEXT4 TEXT6 TEXT8 TEXT9"},
    ReasonPage{Reason::Encrypted, DRMGErrorEvent::EncryptedBackup, u"migrate_iphone_list_encrypted",
               u"IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_", u"TEXT0",
               u"%@<br /><br />%@<br />%@<br />%@<br />%@<br /><br />%@", u"TEXT1 TEXT2 TEXT4 TEXT6 TEXT8 TEXT9"},
    ReasonPage{Reason::SystemTooOld, DRMGErrorEvent::SystemTooOld, u"migrate_iphone_list_invalid",
               u"IDD_STEPWIZ_ITUNESBACKUP_INCOMPATIBLE_IDC_", u"STATIC", u"%@<br /><br />%@", u"TEXT1 TEXT9"},
};

/// The identifiers of texts of the page, which are named without their prefix and separated by blanks.
QStringList identifiersOf(const ReasonPage& page, const char16_t* names)
{
    QStringList identifiers;
    for (const QString& name : QString::fromUtf16(names).split(u' ')) {
        identifiers.append(QString::fromUtf16(page.prefix) + name);
    }
    return identifiers;
}

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
    return page == nullptr ? QString() : text(QString::fromUtf16(page->prefix) + u"HEADER"_s);
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

QString DRMGSequenceStepNewBackupNeeded::reasonHtml() const
{
    const ReasonPage* const page = pageOf(m_backupNeededReason);
    if (page == nullptr) {
        return {};
    }
    const QString format = u"%@<br /><br />"_s + QString::fromUtf16(page->mainFormat);
    return joined(format, identifiersOf(*page, page->firstText) + identifiersOf(*page, page->mainTexts));
}

QString DRMGSequenceStepNewBackupNeeded::noteHtml() const
{
    const ReasonPage* const page = pageOf(m_backupNeededReason);
    return page == nullptr ? QString() : joined(u"%@<br />%@"_s, identifiersOf(*page, u"TEXT10 TEXT11"));
}

QString DRMGSequenceStepNewBackupNeeded::imageName() const
{
    const ReasonPage* const page = pageOf(m_backupNeededReason);
    return page == nullptr ? QString() : QString::fromUtf16(page->imageName);
}

void DRMGSequenceStepNewBackupNeeded::setBackupNeededReason(Reason reason)
{
    m_backupNeededReason = reason;
    Q_EMIT contentChanged();
}
