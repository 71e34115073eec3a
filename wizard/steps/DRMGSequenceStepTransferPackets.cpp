// The phases that work on fetched packets: load, merge, save, restore.

#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "wizard/DRMGSequence.h"

using namespace Qt::StringLiterals;

namespace {

/// What one failed data type has to say, in the words of its report.
QStringList failureTexts(const DRMigrateDataType& dataType)
{
    const DRMigrateReport report = dataType.report();
    QStringList texts;
    for (const DRMigrateSkippedItem& item : report.skipped) {
        texts.append(item.what + u": "_s + item.why);
    }
    return texts.isEmpty() ? QStringList{dataType.dataTypeKey()} : texts;
}

} // namespace

void DRMGSequenceStepTransfer::dataTypeHasBeenLoaded(DRMigrateBackupEntry& entry, DRMigrateDataType&)
{
    continueWhenAllAre(&DRMigrateBackupEntry::areAllDataTypesLoaded, entry, &DRMGSequenceStepTransfer::loadAllDone);
}

void DRMGSequenceStepTransfer::dataTypeHasBeenMerged(DRMigrateBackupEntry& entry, DRMigrateDataType&)
{
    continueWhenAllAre(&DRMigrateBackupEntry::areAllDataTypesMerged, entry,
                       &DRMGSequenceStepTransfer::mergeEntriesDone);
}

void DRMGSequenceStepTransfer::dataTypeHasBeenSaved(DRMigrateBackupEntry& entry, DRMigrateDataType&)
{
    continueWhenAllAre(&DRMigrateBackupEntry::areAllDataTypesSaved, entry, &DRMGSequenceStepTransfer::saveAllDone);
}

/// The first failure ends the run, also while other data types are still at work.
void DRMGSequenceStepTransfer::continueWhenAllAre(EntryTest done, const DRMigrateBackupEntry& entry, Continuation next)
{
    if (entry.doesDataTypesContainErrors()) {
        m_observation.stop();
        addErrorDetails(entry);
        gotoBackupErrorWithErrorCode(kErrorBackupOrConversion);
        return;
    }
    if ((entry.*done)()) {
        (this->*next)();
    }
}

void DRMGSequenceStepTransfer::loadAllDone()
{
    mergeEntries();
}

void DRMGSequenceStepTransfer::mergeEntries()
{
    const auto source = iPhoneBackupEntry();
    const auto target = phoneEntry();
    if (m_isCancelled || !source || !target) {
        return;
    }
    setProgressPhase(Phase::Merge);
    target->mergeWithBackup(*source);
}

void DRMGSequenceStepTransfer::mergeEntriesDone()
{
    saveEntries();
}

void DRMGSequenceStepTransfer::saveEntries()
{
    if (m_isCancelled) {
        return;
    }
    const auto entry = phoneEntry();
    m_observation.start(entry, *this);
    setProgressPhase(Phase::Save);
    entry->saveAll();
}

void DRMGSequenceStepTransfer::saveAllDone()
{
    restorePackets();
}

void DRMGSequenceStepTransfer::restorePackets()
{
    if (m_isCancelled) {
        return;
    }
    setStateMask(kStateUserGoesOn); // from here on the phone changes: there is no way back
    const DRDCDevicePointer device = activeDevice();
    if (!device) {
        gotoBackupErrorWithErrorCode(kErrorPhoneGone);
        return;
    }
    Q_EMIT restoreWillBegin();
    if (m_isCancelled) { // by whoever was told
        return;
    }
    if (sequence()->parameters().value<QStringList>(DRMGSequence::kAndroidBackupPackets).isEmpty()) {
        restorePacketsDone(nullptr);
        return;
    }
    setProgressPhase(Phase::Restore);
    startRestore(device);
}

/// Kept: all packets of the description are restored, those of ignored data types included; the device layer leaves a
/// packet that was not rebuilt as it is.
void DRMGSequenceStepTransfer::startRestore(const DRDCDevicePointer& device)
{
    const DRMigrateServices& services = context().services;
    const auto info = sequence()->parameters().value<std::shared_ptr<DRBRBackupInfo>>(DRMGSequence::kBackupInfo);
    info->setTargetPath(DRMigrateUtils::pathToInflateFolder(services.folders.temporary));

    const DRDCDeviceTaskPointer task = device->requestTask();
    task->setTaskID(u"kDRBRDeviceTaskID_RestoreMigrate"_s);
    task->restorePacketsWithDevice(
        device, *info, services.backupRestoreController.dataTypesDefaultSortOrder(),
        inThisRun<DRDCTaskResult>([this](const DRDCTaskResult& result) { restorePacketsDone(&result); }));
}

void DRMGSequenceStepTransfer::restorePacketsDone(const DRDCTaskResult* result)
{
    if (m_isCancelled) {
        return;
    }
    if (result != nullptr) {
        addSkipped(result->skipped);
        addErrorDetails(result->failures);
    }
    if (!activeDevice()) {
        gotoRestoreErrorWithErrorCode(kErrorPhoneGone);
        return;
    }
    if (result != nullptr && result->hasErrors()) {
        gotoRestoreErrorWithErrorCode(kErrorRestoreOrCopy);
        return;
    }
    transferMedia();
}

void DRMGSequenceStepTransfer::addErrorDetails(const DRMigrateBackupEntry& entry)
{
    for (const QString& key : entry.dataTypeKeys()) {
        const auto dataType = entry.dataTypeForKey(key);
        if (dataType && dataType->hasError()) {
            m_errorDetails += failureTexts(*dataType);
        }
    }
}
