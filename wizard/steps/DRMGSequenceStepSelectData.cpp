#include "wizard/steps/DRMGSequenceStepSelectData.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {

using Refusal = DRMGTransferGate::Refusal;

constexpr std::chrono::hours kOldBackupAge{30 * 24};
constexpr QSize kOldBackupSize{400, 260};
const QString kOldBackupLink = u"oldbackup"_s;

} // namespace

DRMGSequenceStepSelectData::DRMGSequenceStepSelectData(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kSelectData,
                        .heading = u"IDD_STEPWIZ_REVIEWDATA_IDC_HEADER"_s,
                        .pageViewComponents = {u"select-data"_s}})
{
}

void DRMGSequenceStepSelectData::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    const auto entry = iPhoneBackupEntry();
    if (!entry) {
        return;
    }
    m_refusal = DRMGTransferGate::hasNewerLayout(*entry) ? Refusal::NewerLayout : Refusal::None;
    m_observation.start(entry, *this);
    updateWithEntry(*entry);
    entry->addAllDataTypes();
    entry->loadAll();
    updateContent(*entry);
}

void DRMGSequenceStepSelectData::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    setStateMask(kStateAllEnabled);
    relabelCancel(u"IDD_STEPWIZ_SHEET_IDC_BACK"_s);
}

void DRMGSequenceStepSelectData::stepWillDisappear()
{
    saveSelections();
    m_isWaitingForContent = false;
    m_observation.stop();
    DRMGSequenceStep::stepWillDisappear();
}

bool DRMGSequenceStepSelectData::sequenceShouldChangeToNextStep()
{
    saveSelections();
    m_isWaitingForContent = isLoading();
    if (m_isWaitingForContent) {
        updateStateMask();
        Q_EMIT contentChanged();
        return false;
    }
    routeTowardsTransfer();
    return false;
}

bool DRMGSequenceStepSelectData::sequenceShouldCancel()
{
    migration().gotoPreviousIPhoneStep();
    return false;
}

void DRMGSequenceStepSelectData::setTicked(const QString& key, bool ticked)
{
    DRMGSelectionBox* const box = DRMGSelection::boxForKey(m_boxes, key);
    if (box == nullptr || box->isTicked == ticked) {
        return;
    }
    box->isTicked = ticked;
    m_refusal = m_refusal == Refusal::NothingMoves ? Refusal::None : m_refusal;
    saveSelections();
    m_isWaitingForContent = m_isWaitingForContent && !selectedTypes().isEmpty();
    updateStateMask();
    Q_EMIT contentChanged();
}

QString DRMGSequenceStepSelectData::statusText() const
{
    if (m_isWaitingForContent) {
        return text(u"wizard_waiting_for_content"_s);
    }
    switch (m_refusal) {
    case Refusal::None:
        return {};
    case Refusal::NewerLayout:
        return text(u"wizard_layout_unreadable"_s);
    case Refusal::NothingMoves:
        return text(u"wizard_nothing_moves"_s);
    }
    return {};
}

void DRMGSequenceStepSelectData::refuse(Refusal why)
{
    m_refusal = why;
    Q_EMIT contentChanged();
}

QString DRMGSequenceStepSelectData::bodyHtml() const
{
    return joined(u"%@<br />%@"_s, {u"IDD_STEPWIZ_REVIEWDATA_IDC_STATIC"_s, u"IDD_STEPWIZ_REVIEWDATA_IDC_STATIC_2"_s});
}

QString DRMGSequenceStepSelectData::backupInfoHtml() const
{
    const auto entry = iPhoneBackupEntry();
    const QDateTime made = entry ? entry->lastBackupDate() : QDateTime();
    const QDateTime now = context().services.clock.now();
    const bool isOld = made.isValid() && made.msecsTo(now) > std::chrono::milliseconds(kOldBackupAge).count();
    QString html = text(isOld ? u"IDS_BACKUP_DATE_OLD"_s : u"IDS_BACKUP_DATE"_s);
    if (isOld) {
        html = u"<span style='color:#e6c81e'>"_s + DRMGHtml::withLink(html, kOldBackupLink) + u"</span>"_s;
    }
    return html.replace(u"%1 %2"_s, dateText(made).toHtmlEscaped());
}

std::optional<DRMGTooltip> DRMGSequenceStepSelectData::tooltipForLink(const QString& link) const
{
    if (!DRMGHtml::isLink(link, kOldBackupLink)) {
        return std::nullopt;
    }
    return DRMGTooltip{text(u"IDS_TOO_OLD_BUBBLE"_s), kOldBackupSize};
}

QString DRMGSequenceStepSelectData::deviceName() const
{
    const auto entry = iPhoneBackupEntry();
    return entry ? withoutControlCharacters(entry->deviceName()) : QString();
}

QString DRMGSequenceStepSelectData::imageName() const
{
    return u"migrate_iphone_list"_s;
}

QString DRMGSequenceStepSelectData::imageText() const
{
    return text(u"wizard_name_iphone"_s);
}

void DRMGSequenceStepSelectData::dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType&)
{
    updateContent(entry);
    if (m_isWaitingForContent && !isLoading()) {
        m_isWaitingForContent = false;
        updateStateMask();
        sequence()->next();
    }
}

void DRMGSequenceStepSelectData::updateWithEntry(const DRMigrateBackupEntry& entry)
{
    const bool isFirstVisit = !sequence()->parameters().contains(DRMGSequence::kSelectedTypes);
    const QStringList selection = selectedTypes();
    m_boxes.clear();
    for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
        m_boxes.push_back({.key = category.key,
                           .isTicked = isFirstVisit || selection.contains(category.key),
                           .count = DRMGSelection::entryCount(entry, category.key)});
    }
    Q_EMIT contentChanged();
}

void DRMGSequenceStepSelectData::updateContent(const DRMigrateBackupEntry& entry)
{
    for (DRMGSelectionBox& box : m_boxes) {
        box.count = DRMGSelection::itemCount(entry, box.key);
        box.state = DRMGSelection::contentState(entry, box.key);
    }
    Q_EMIT contentChanged();
}

bool DRMGSequenceStepSelectData::isLoading() const
{
    return std::ranges::any_of(m_boxes,
                               [](const DRMGSelectionBox& box) { return box.state == DRKindContent::State::Loading; });
}

void DRMGSequenceStepSelectData::updateStateMask()
{
    const bool isNextDisabled = isWaitingForContent() || selectedTypes().isEmpty();
    setStateMask(isNextDisabled ? kStateNextDisabled : kStateAllEnabled);
}

void DRMGSequenceStepSelectData::saveSelections()
{
    sequence()->parameters().setValue(DRMGSequence::kSelectedTypes, DRMGSelection::selectedKeys(m_boxes));
}
