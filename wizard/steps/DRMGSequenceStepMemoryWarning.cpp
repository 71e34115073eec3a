#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/core/DRSizeText.h"
#include "platform/device/DRDCFilesystem.h"
#include "wizard/DRMGAnalytics.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

quint64 tickedBytes(DRMGSelectionBoxes& boxes, const QString& key)
{
    const DRMGSelectionBox* const box = DRMGSelection::boxForKey(boxes, key);
    return box != nullptr && box->isTicked ? box->sizeBytes.value_or(0) : 0;
}

} // namespace

DRMGSequenceStepMemoryWarning::DRMGSequenceStepMemoryWarning(const DRMGContext& context)
    : DRMGSequenceStep(context,
                       {.key = DRMGStepKeys::kMemoryWarning,
                        .heading = u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_HEADER"_s,
                        .pageViewComponents = {}})
{
}

void DRMGSequenceStepMemoryWarning::stepWillAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepWillAppearInDirection(direction);
    setStateMask(kStateAllEnabled);
    updateEntry();
}

void DRMGSequenceStepMemoryWarning::stepDidAppearInDirection(DRSequenceDirection direction)
{
    DRMGSequenceStep::stepDidAppearInDirection(direction);
    DRMGAnalyticsSendErrorEvent(context().analytics, DRMGErrorEvent::NotEnoughSpace);
}

void DRMGSequenceStepMemoryWarning::stepWillDisappear()
{
    saveSelections();
    DRMGSequenceStep::stepWillDisappear();
}

bool DRMGSequenceStepMemoryWarning::sequenceShouldChangeToNextStep()
{
    routeTowardsTransfer();
    return false;
}

bool DRMGSequenceStepMemoryWarning::sequenceShouldCancel()
{
    migration().gotoStepForKey(DRMGStepKeys::kSelectData);
    return false;
}

void DRMGSequenceStepMemoryWarning::setTicked(const QString& key, bool ticked)
{
    DRMGSelectionBox* const box = DRMGSelection::boxForKey(m_boxes, key);
    if (box == nullptr || box->isTicked == ticked) {
        return;
    }
    box->isTicked = ticked;
    if (const auto entry = iPhoneBackupEntry()) {
        updateMemoryWithEntry(*entry);
    }
    saveSelections();
}

QString DRMGSequenceStepMemoryWarning::bodyHtml() const
{
    return joined(u"%@<br />%@"_s,
                  {u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_STATIC"_s, u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_TEXT"_s});
}

QString DRMGSequenceStepMemoryWarning::pressNextHtml() const
{
    return text(u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_STATIC_2"_s);
}

std::vector<DRMGSequenceStepMemoryWarning::StorageRow> DRMGSequenceStepMemoryWarning::storageRows() const
{
    using Part = StorageRow::Part;
    const StorageRow last = m_storage.missing() == 0
                                ? StorageRow{Part::Free, text(u"wizard_storage_free"_s), m_storage.free}
                                : StorageRow{Part::Missing, text(u"wizard_storage_missing"_s), m_storage.missing()};
    return {{Part::Other, text(u"memory_bar_other"_s), m_storage.other},
            {Part::Music, text(u"memory_bar_music"_s), m_storage.music},
            {Part::Videos, text(u"memory_bar_videos"_s), m_storage.videos},
            {Part::Images, text(u"memory_bar_images"_s), m_storage.images},
            last};
}

QString DRMGSequenceStepMemoryWarning::storageName() const
{
    return text(u"wizard_name_storage"_s);
}

void DRMGSequenceStepMemoryWarning::updateEntry()
{
    m_boxes.clear();
    const auto entry = iPhoneBackupEntry();
    if (!entry) {
        return;
    }
    const QStringList selection = selectedTypes();
    for (const QString& key : DRMGSelection::mediaKeys()) {
        m_boxes.push_back({.key = key,
                           .isTicked = selection.contains(key),
                           .count = DRMGSelection::itemCount(*entry, key),
                           .state = DRMGSelection::contentState(*entry, key)});
    }
    updateMemoryWithEntry(*entry);
}

void DRMGSequenceStepMemoryWarning::updateMemoryWithEntry(const DRMigrateIPhoneBackupEntry& entry)
{
    for (DRMGSelectionBox& box : m_boxes) {
        box.sizeBytes = DRMGSelection::mediaBytes(entry, box.key);
    }
    const DRDCDevicePointer device = activeDevice();
    m_storage = storageFigures(device ? device->preferredFilesystem().memoryUsableCapacity() : 0,
                               device ? device->preferredFilesystem().memoryUsableFreeBytes() : 0,
                               {.music = tickedBytes(m_boxes, DRMigrateKeys::kMusic),
                                .images = tickedBytes(m_boxes, DRMigrateKeys::kImages),
                                .videos = tickedBytes(m_boxes, DRMigrateKeys::kVideos)});
    m_statusText = m_storage.isOverfull() ? QString() : whatIsMissing(entry);
    setStateMask(m_storage.isOverfull() ? kStateNextDisabled : kStateAllEnabled);
    Q_EMIT contentChanged();
}

void DRMGSequenceStepMemoryWarning::saveSelections()
{
    sequence()->parameters().setValue(DRMGSequence::kSelectedTypes,
                                      DRMGSelection::adjustedSelection(selectedTypes(), m_boxes));
}

QString DRMGSequenceStepMemoryWarning::whatIsMissing(const DRMigrateIPhoneBackupEntry& entry) const
{
    const DRDCDevicePointer device = activeDevice();
    const quint64 needed =
        entry.bytesNeededForSelectedTypes(DRMGSelection::adjustedSelection(selectedTypes(), m_boxes));
    const quint64 free = device ? device->preferredFilesystem().memoryFreeBytes() : 0;
    if (!device || needed <= free) {
        return {};
    }
    const QLocale locale;
    return text(u"wizard_too_little_space"_s)
        .replace(u"%1"_s, sizeText(needed, locale))
        .replace(u"%2"_s, sizeText(free, locale));
}
