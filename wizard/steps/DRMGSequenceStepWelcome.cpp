#include "wizard/steps/DRMGSequenceStepWelcome.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/media_library/DRMediaAccessController.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <array>
#include <span>

using namespace Qt::StringLiterals;

namespace {

struct TooltipPart {
    const char16_t* format;
    const char16_t* identifier;
};

constexpr std::array kHowToMakeABackup{
    TooltipPart{u"<b>%@</b><br /><br />", u"IDD_MOREINFO"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT1"},
    TooltipPart{u"<br />%@<br />", u"IDD_MOREINFO_IDC_TXT2"},
    TooltipPart{u"<br />%@<br /><br />", u"IDD_MOREINFO_IDC_TXT3"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT6"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT7"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT8"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT9"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT10"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT11"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT12"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO_IDC_TXT13"},
    TooltipPart{u"<br />%@<br />", u"IDD_MOREINFO_IDC_TXT14"},
    TooltipPart{u"<br />%@<br />", u"IDD_MOREINFO_IDC_TXT15"},
    TooltipPart{u"<br />%@<br />", u"IDD_MOREINFO_IDC_TXT16"},
};

constexpr std::array kHowToSetThePhone{
    TooltipPart{u"<b>%@</b><br /><br />", u"IDD_MOREINFO2"},
    TooltipPart{u"%@<br />", u"IDD_MOREINFO2_IDC_TXT1"},
    TooltipPart{u"<br />%@<br />", u"IDD_MOREINFO2_IDC_TXT2"},
    TooltipPart{u"<br />%@", u"IDD_MOREINFO2_IDC_TXT3"},
};

constexpr QSize kHowToMakeABackupSize{400, 600};
constexpr QSize kHowToSetThePhoneSize{400, 200};

const QString kFirstLink = u"1"_s;
const QString kSecondLink = u"2"_s;

} // namespace

DRMGSequenceStepWelcome::DRMGSequenceStepWelcome(const DRMGContext& context)
    : DRMGSequenceStep(
          context,
          {.key = DRMGStepKeys::kWelcome, .heading = u"IDD_STUDIO_IDC_HEADER"_s, .pageViewComponents = {u"welcome"_s}})
{
}

void DRMGSequenceStepWelcome::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    const DRMigrateServices& services = context().services;
    services.taskQueue.runInBackground(
        [&media = services.mediaAccessController] { static_cast<void>(media.iTunesLibrary()); });
}

void DRMGSequenceStepWelcome::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    DRMGAnalyticsSendSequenceStartedEvent(context().analytics);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDCANCEL"_s);
}

bool DRMGSequenceStepWelcome::sequenceShouldChangeToNextStep()
{
    migration().gotoNextIPhoneStepWithDevice(activeDevice(), migration().latestBackupList());
    return false;
}

QString DRMGSequenceStepWelcome::bodyHtml() const
{
    return joined(u"%@ %@"_s, {u"IDD_STUDIO_IDC_TXT1"_s, u"IDD_STUDIO_IDC_TXT2"_s});
}

QString DRMGSequenceStepWelcome::firstStepHtml() const
{
    return stepHtml({u"IDD_STUDIO_IDC_TXT3"_s, u"IDD_STUDIO_IDC_TXT4"_s, u"IDD_STUDIO_IDC_LINK1"_s}, kFirstLink);
}

QString DRMGSequenceStepWelcome::secondStepHtml() const
{
    return stepHtml({u"IDD_STUDIO_IDC_TXT6"_s, u"IDD_STUDIO_IDC_TXT7"_s, u"IDD_STUDIO_IDC_LINK2"_s}, kSecondLink);
}

std::optional<DRMGTooltip> DRMGSequenceStepWelcome::tooltipForLink(const QString& link) const
{
    const bool isFirst = DRMGHtml::isLink(link, kFirstLink);
    QString html;
    for (const TooltipPart& part : isFirst ? std::span<const TooltipPart>(kHowToMakeABackup) : kHowToSetThePhone) {
        html += joined(QString::fromUtf16(part.format), {QString::fromUtf16(part.identifier)});
    }
    return DRMGTooltip{html, isFirst ? kHowToMakeABackupSize : kHowToSetThePhoneSize};
}

QString DRMGSequenceStepWelcome::stepHtml(const QStringList& identifiers, const QString& link) const
{
    const QString lines = u"%@<br />%@<br /><a href='"_s + link + u"'>%@</a>"_s;
    return u"<p style='margin-left:10px;text-indent:-10px'>"_s + joined(lines, identifiers) + u"</p>"_s;
}
