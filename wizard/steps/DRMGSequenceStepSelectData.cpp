#include "wizard/steps/DRMGSequenceStepSelectData.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

using namespace Qt::StringLiterals;

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
    m_observation.start(entry, *this);
    updateWithEntry(*entry);
    entry->addAllDataTypes();
    entry->loadAll();
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
    m_observation.stop();
    DRMGSequenceStep::stepWillDisappear();
}

bool DRMGSequenceStepSelectData::sequenceShouldChangeToNextStep()
{
    saveSelections();
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
    saveSelections();
    setStateMask(selectedTypes().isEmpty() ? kStateNextDisabled : kStateAllEnabled);
    Q_EMIT contentChanged();
}

void DRMGSequenceStepSelectData::dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType& dataType)
{
    const QString& key = dataType.dataTypeKey();
    updateCount(entry, key == DRMigrateKeys::kVoiceMemos ? DRMigrateKeys::kMusic : key);
    if (key == DRMigrateKeys::kImages) {
        updateCount(entry, DRMigrateKeys::kVideos);
    }
    Q_EMIT contentChanged();
}

void DRMGSequenceStepSelectData::updateWithEntry(const DRMigrateBackupEntry& entry)
{
    const bool isFirstVisit = !sequence()->parameters().contains(DRMGSequence::kSelectedTypes);
    const QStringList selection = selectedTypes();
    m_boxes.clear();
    for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
        m_boxes.push_back({.key = category.key,
                           .isTicked = isFirstVisit || selection.contains(category.key),
                           .count = DRMGSelection::entryCount(entry, category.key),
                           .sizeBytes = std::nullopt});
    }
    Q_EMIT contentChanged();
}

void DRMGSequenceStepSelectData::updateCount(const DRMigrateBackupEntry& entry, const QString& key)
{
    if (DRMGSelectionBox* const box = DRMGSelection::boxForKey(m_boxes, key)) {
        box->count = DRMGSelection::itemCount(entry, key);
    }
}

void DRMGSequenceStepSelectData::saveSelections()
{
    sequence()->parameters().setValue(DRMGSequence::kSelectedTypes, DRMGSelection::selectedKeys(m_boxes));
}
