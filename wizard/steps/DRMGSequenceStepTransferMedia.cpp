// The last phase: copying the media files to the phone's storage, one kind after the other.

#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "model/media/DRMigrateMediaDataType.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"

using namespace Qt::StringLiterals;

/// The phase is entered also by a cancelled run, which then ends here.
void DRMGSequenceStepTransfer::transferMedia()
{
    setProgressPhase(Phase::TransferMedia);
    if (!m_isCancelled) {
        transferCamera();
    }
}

void DRMGSequenceStepTransfer::transferCamera()
{
    transferFilesOf(DRMigrateKeys::kImages, &DRMGSequenceStepTransfer::transferCameraDone);
}

void DRMGSequenceStepTransfer::transferCameraDone(const DRDCFileFailures& failures)
{
    continueAfterCopy(failures, &DRMGSequenceStepTransfer::transferVoiceMemos);
}

void DRMGSequenceStepTransfer::transferVoiceMemos()
{
    transferFilesOf(DRMigrateKeys::kVoiceMemos, &DRMGSequenceStepTransfer::transferVoiceMemosDone);
}

void DRMGSequenceStepTransfer::transferVoiceMemosDone(const DRDCFileFailures& failures)
{
    continueAfterCopy(failures, &DRMGSequenceStepTransfer::transferMusic);
}

void DRMGSequenceStepTransfer::transferMusic()
{
    transferFilesOf(DRMigrateKeys::kMusic, &DRMGSequenceStepTransfer::transferMusicDone);
}

void DRMGSequenceStepTransfer::transferMusicDone(const DRDCFileFailures& failures)
{
    continueAfterCopy(failures, &DRMGSequenceStepTransfer::allDone);
}

void DRMGSequenceStepTransfer::transferFilesOf(const QString& key,
                                               void (DRMGSequenceStepTransfer::*done)(const DRDCFileFailures&))
{
    if (m_isCancelled) {
        return;
    }
    const auto entry = phoneEntry();
    const auto media = entry ? std::dynamic_pointer_cast<DRMigrateMediaDataType>(entry->dataTypeForKey(key)) : nullptr;
    if (!media) {
        (this->*done)(std::nullopt);
        return;
    }
    media->transferFilesWithTarget(
        inThisRun<DRDCFileFailures>([this, done](const DRDCFileFailures& failures) { (this->*done)(failures); }));
}

void DRMGSequenceStepTransfer::continueAfterCopy(const DRDCFileFailures& failures, Continuation next)
{
    if (m_isCancelled) {
        return;
    }
    if (!failures || failures->empty()) {
        (this->*next)();
        return;
    }
    for (const DRDCFileFailure& failure : *failures) {
        m_errorDetails.append((failure.file ? failure.file->displayName() : QString()) + u": "_s + failure.reason);
    }
    gotoRestoreErrorWithErrorCode(kErrorRestoreOrCopy);
}
