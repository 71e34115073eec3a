#include "wizard/steps/DRMGSequenceStepSelectBackup.h"

#include "platform/core/DRLog.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kNotShownSize{300, 400};
constexpr int kNewestUnreadableSystem = 3;

struct RowImage {
    const char16_t* name;
    const char16_t* textIdentifier;
};

constexpr RowImage kUsable{u"migrate_iphone_list", u"wizard_backup_usable"};
constexpr RowImage kEncrypted{u"migrate_iphone_list_encrypted", u"wizard_backup_encrypted"};
constexpr RowImage kTooOld{u"migrate_iphone_list_invalid", u"wizard_backup_too_old"};

const RowImage& imageOf(const DRMigrateIPhoneBackupEntry& entry)
{
    if (entry.isEncrypted()) {
        return kEncrypted;
    }
    return entry.majorProductVersion() > kNewestUnreadableSystem ? kUsable : kTooOld;
}

} // namespace

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

bool DRMGSequenceStepSelectBackup::isInList(int row) const
{
    return row >= 0 && std::cmp_less(row, m_backupList.size());
}

DRMGSequenceStepSelectBackup::Row DRMGSequenceStepSelectBackup::row(int row) const
{
    if (!isInList(row)) {
        return {};
    }
    const DRMigrateIPhoneBackupEntry& entry = *m_backupList[static_cast<std::size_t>(row)];
    const RowImage& image = imageOf(entry);
    return {.name = withoutControlCharacters(entry.deviceName()),
            .date = dateText(entry.lastBackupDate()),
            .imageName = QString::fromUtf16(image.name),
            .imageText = text(QString::fromUtf16(image.textIdentifier))};
}

QString DRMGSequenceStepSelectBackup::bodyHtml() const
{
    return text(u"IDD_STEPWIZ_SELECT_IPHONE_IDC_STATIC"_s);
}

QString DRMGSequenceStepSelectBackup::notShownHtml() const
{
    return joined(u"<a href='1'>%@</a>"_s, {u"IDD_STEPWIZ_SELECT_IPHONE_IDC_BUBBLE"_s});
}

std::optional<DRMGTooltip> DRMGSequenceStepSelectBackup::tooltipForLink(const QString&) const
{
    return DRMGTooltip{text(u"IDS_PHONE_BUBBLE"_s).replace(u"<&bull>"_s, u"\u2022"_s), kNotShownSize};
}

QString DRMGSequenceStepSelectBackup::listName() const
{
    return text(u"wizard_name_backups"_s);
}

QString DRMGSequenceStepSelectBackup::nameColumnTitle() const
{
    return text(u"wizard_column_name"_s);
}

QString DRMGSequenceStepSelectBackup::dateColumnTitle() const
{
    return text(u"wizard_column_date"_s);
}

void DRMGSequenceStepSelectBackup::selectRow(int row)
{
    const bool isChosen = isInList(row);
    m_selectedRow = isChosen ? row : -1;
    if (isChosen) {
        sequence()->parameters().setValue(DRMGSequence::kIPhoneBackupEntry,
                                          m_backupList[static_cast<std::size_t>(row)]);
    }
    setStateMask(isChosen ? kStateAllEnabled : kStateNextDisabled);
    Q_EMIT contentChanged();
}
