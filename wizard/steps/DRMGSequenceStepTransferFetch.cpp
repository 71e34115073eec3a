// The beginning of a run, up to the phone's packets on this computer; and what an earlier run left behind.

#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/backup_entry/DRMigrateServices.h"
#include "model/media/DRMigrateMediaDataType.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "wizard/DRDateText.h"
#include "wizard/DRMGSequence.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kProgressInterval = 100ms;
constexpr double kProgressDeltaSeconds = 0.1F; ///< kept in single precision, as the estimate was tuned with it

/// A single failure of one of the two packets that hold contacts does not end the run: a phone may offer both but use
/// one.
bool isTolerated(const DRDCTaskResult& result)
{
    const QStringList failed = result.packetsWithErrors();
    return failed.size() == 1 && (failed.front() == DRMigrateKeys::kContactsImportPacket ||
                                  failed.front() == DRMigrateKeys::kPhonebookPacket);
}

/// The data type that carries a selection key: videos are carried by that of the photos.
QString dataTypeKeyOf(const QString& selectionKey)
{
    return selectionKey == DRMigrateKeys::kVideos ? DRMigrateKeys::kImages : selectionKey;
}

} // namespace

/// What an earlier run still has under way would write into the working folder of this one.
void DRMGSequenceStepTransfer::begin()
{
    m_startTimer.reset();
    m_discardTimer.reset(); // the run empties the folder itself
    if (isEarlierRunWorking()) {
        m_startTimer = context().timers.runAfter(kProgressInterval, [this] { begin(); });
        return;
    }
    m_formerEntry.reset();
    backupPackets();
    if (m_progressPhase == Phase::NotStarted) {
        waitForPhone();
    }
}

bool DRMGSequenceStepTransfer::isEarlierRunWorking() const
{
    return m_isDiscarding || (m_formerEntry && m_formerEntry->isWorking());
}

/// A phone that was in use and comes back is not announced anew.
void DRMGSequenceStepTransfer::waitForPhone()
{
    m_startTimer = context().timers.runAfter(kLookForPhoneInterval,
                                             [this] { activeDevice() ? routeTowardsTransfer() : waitForPhone(); });
}

void DRMGSequenceStepTransfer::discardWorkingFiles()
{
    m_discardTimer.reset();
    const auto entry = phoneEntry();
    if (entry && entry->isWorking()) {
        m_discardTimer = context().timers.runAfter(kProgressInterval, [this] { discardWorkingFiles(); });
        return;
    }
    m_isDiscarding = true;
    const DRMigrateServices& services = context().services;
    services.taskQueue.runInBackground([step = QPointer<DRMGSequenceStepTransfer>(this), &queue = services.taskQueue,
                                        temporary = services.folders.temporary] {
        if (!DRMigrateUtils::clearTempFolder(temporary)) {
            qCWarning(lcMigrate) << "the working folder could not be emptied; it may hold private content";
        }
        queue.runOnMainThread([step] {
            if (DRMGSequenceStepTransfer* const current = step.data()) {
                current->m_isDiscarding = false;
            }
        });
    });
}

void DRMGSequenceStepTransfer::backupPackets()
{
    const DRDCDevicePointer device = activeDevice();
    if (!device) {
        return;
    }
    setProgressPhase(Phase::BackUp);
    if (!DRMigrateUtils::clearTempFolder(context().services.folders.temporary)) {
        // What an earlier run left there could reach the phone in place of this run's packets.
        m_errorDetails.append(
            u"the working folder \"%1\" cannot be emptied; make sure that you may write there and that nothing uses it"_s
                .arg(DRMigrateUtils::pathToInflateFolder(context().services.folders.temporary)));
        gotoBackupErrorWithErrorCode(kErrorBackupOrConversion);
        return;
    }
    const auto entry = makeAndroidEntry(device);
    noteUnmovableTypes(*entry);
    if (entry->dataTypeKeys().isEmpty()) { // no completion would ever come
        addErrorDetails(m_skippedPackets);
        if (m_errorDetails.isEmpty()) {
            m_errorDetails.append(text(u"wizard_nothing_chosen"_s));
        }
        gotoBackupErrorWithErrorCode(kErrorBackupOrConversion);
        return;
    }
    const QStringList packetIDs = entry->packetIDsForAddedDataTypes();
    sequence()->parameters().setValue(DRMGSequence::kAndroidBackupEntry, entry);
    beginProgress(*entry);
    sequence()->parameters().setValue(DRMGSequence::kAndroidBackupPackets, packetIDs);
    if (packetIDs.isEmpty()) {
        backupPacketsDone(nullptr, {});
        return;
    }
    fetchPackets(device, packetIDs);
}

/// A kind that the iPhone's entry has no data type for would never be merged, and the run would wait for it for ever.
QStringList DRMGSequenceStepTransfer::movableTypes() const
{
    const auto source = iPhoneBackupEntry();
    QStringList keys = typesToMove();
    keys.removeIf([&source](const QString& key) { return !source || !source->dataTypeForKey(dataTypeKeyOf(key)); });
    return keys;
}

/// What was selected and has no place in the phone's entry must not be forgotten.
void DRMGSequenceStepTransfer::noteUnmovableTypes(const DRMigrateAndroidBackupEntry& entry)
{
    QStringList fedKeys;
    for (const QString& key : entry.dataTypeKeys()) {
        fedKeys.append(entry.dataTypeForKey(key)->sourceKey());
    }
    const QStringList readable = movableTypes();
    for (const QString& key : typesToMove()) {
        if (!readable.contains(key)) {
            addSkipped({{.packetID = key, .reason = u"it cannot be read from an iPhone backup yet"_s}});
        } else if (!fedKeys.contains(dataTypeKeyOf(key))) {
            addSkipped({{.packetID = key, .reason = u"the phone has no app for it"_s}});
        }
    }
}

std::shared_ptr<DRMigrateAndroidBackupEntry>
DRMGSequenceStepTransfer::makeAndroidEntry(const DRDCDevicePointer& device) const
{
    auto entry = std::make_shared<DRMigrateAndroidBackupEntry>(context().services);
    for (const QString& key : movableTypes()) {
        if (key != DRMigrateKeys::kImages && key != DRMigrateKeys::kVideos) {
            entry->addDataType(key, device);
        }
    }
    addMediaDataTypes(*entry, device);
    return entry;
}

void DRMGSequenceStepTransfer::addMediaDataTypes(DRMigrateAndroidBackupEntry& entry,
                                                 const DRDCDevicePointer& device) const
{
    const QStringList selection = movableTypes();
    const quint32 fileKinds = (selection.contains(DRMigrateKeys::kImages) ? DRMigrateFileKinds::kPhotos : 0) |
                              (selection.contains(DRMigrateKeys::kVideos) ? DRMigrateFileKinds::kVideos : 0);
    if (fileKinds != 0) {
        entry.addDataType(DRMigrateKeys::kImages, device);
        const auto images =
            std::dynamic_pointer_cast<DRMigrateMediaDataType>(entry.dataTypeForKey(DRMigrateKeys::kImages));
        if (images) {
            images->setFileKindsToTransfer(fileKinds);
        }
    }
    const auto source = iPhoneBackupEntry();
    for (const QString& key : {DRMigrateKeys::kMusic, DRMigrateKeys::kImages, DRMigrateKeys::kVoiceMemos}) {
        const auto from = source ? source->dataTypeForKey(key) : nullptr;
        const auto to = entry.dataTypeForKey(key);
        if (from && to) {
            to->setEntries(from->entries()); // counted for the progress from the start
        }
    }
}

void DRMGSequenceStepTransfer::beginProgress(DRMigrateAndroidBackupEntry& entry)
{
    entry.beginProgress();
    m_progressTimer =
        context().timers.repeatEvery(kProgressInterval, [this] { updateProgress(kProgressDeltaSeconds); });
    updateProgress(0.0);
}

void DRMGSequenceStepTransfer::fetchPackets(const DRDCDevicePointer& device, const QStringList& packetIDs)
{
    const DRMigrateServices& services = context().services;
    const QString name = u"Tarvex Transfer %1"_s.arg(mediumDateText(services.clock.now()));
    sequence()->parameters().setValue(DRMGSequence::kBackupName, name);

    const DRDCDeviceTaskPointer task = device->requestTask();
    task->setTaskID(u"kDBRCDeviceTaskID_BackupMigrate"_s);

    const QDateTime date = services.clock.now();
    const QString folder = services.backupRestoreController.pathToBackupFolderWithDevice(*device, date);
    const auto info = std::make_shared<DRBRBackupInfo>();
    info->setTargetPath(folder);
    info->setBackupDate(date);
    info->setBackupName(name);
    info->setDeviceSoftwareVersion(device->appProductRevision());
    info->setApplicationSoftwareVersion(context().applicationVersion);
    info->addPacketsToBackup(packetIDs);
    sequence()->parameters().setValue(DRMGSequence::kBackupInfo, info);

    task->backupPacketsWithDevice(device, *info, services.backupRestoreController.dataTypesDefaultSortOrder(),
                                  inThisRun<DRDCTaskResult>([this, folder](const DRDCTaskResult& result) {
                                      backupPacketsDone(&result, folder);
                                  }));
}

void DRMGSequenceStepTransfer::backupPacketsDone(const DRDCTaskResult* result, const QString& folder)
{
    if (m_isCancelled) {
        return;
    }
    if (!activeDevice()) {
        gotoBackupErrorWithErrorCode(kErrorPhoneGone);
        return;
    }
    if (result != nullptr && result->hasErrors() && !isTolerated(*result)) {
        addErrorDetails(result->failures);
        gotoBackupErrorWithErrorCode(kErrorBackupOrConversion);
        return;
    }
    const auto entry = phoneEntry();
    if (result != nullptr) {
        leaveOutFailedPackets(*entry, *result);
    }
    entry->setBackupPath(result == nullptr ? QString() : folder);
    m_observation.start(entry, *this);
    setProgressPhase(Phase::Load);
    entry->loadAll();
}

/// The tolerated one, if any: it stays on the phone as it is, and must not be forgotten.
void DRMGSequenceStepTransfer::leaveOutFailedPackets(DRMigrateBackupEntry& entry, const DRDCTaskResult& result)
{
    addSkipped(result.failures);
    for (const QString& packetID : result.packetsWithErrors()) {
        if (const auto dataType = entry.dataTypeForPacketID(packetID)) {
            dataType->setIgnoreDataType(true);
        }
    }
}
