#pragma once

#include <memory>

#include <QEventLoop>

#include "model/iphone_backup/DRMigrateIPhoneBackupEntry.h"
#include "wizard/DRMGSequence.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

class DRInterrupt;

/// Is told how a transfer goes. Main thread.
class DRTransferObserver {
public:
    virtual ~DRTransferObserver() = default;

    virtual void phaseChanged(DRMGSequenceStepTransfer::Phase phase) = 0;
    virtual void progressed(double fraction, double secondsRemaining) = 0;

    /// The packets are rebuilt; this warning is told before the phone is written.
    virtual void warned(const QString& message) = 0;

    /// All warnings are told; from here on the phone is written.
    virtual void restoreWillBegin() = 0;

    /// Ctrl-C was pressed while the phone is written: the run goes on.
    virtual void interruptedWhileWriting() = 0;

    /// It was pressed again: the process ends as soon as this returns. `phoneBackup` is the folder of the phone's
    /// backup.
    virtual void willBeAbandoned(const QString& phoneBackup) = 0;
};

/// Drives the wizard's transfer step from its start to the closing page, without a window.
class DRTransferRun {
public:
    struct Result {
        enum class Ending {
            Closed,      ///< the closing page was reached: see `errorState`
            Interrupted, ///< before the restore: the phone was only read
            NotStarted,  ///< routing did not lead to the transfer: see `landedOn`
            PhoneGone,   ///< the phone vanished before the first phase
        };

        Ending ending = Ending::NotStarted;
        QString landedOn;          ///< the key of the step that routing led to
        DRTransferResult transfer; ///< of a run that was closed
    };

    DRTransferRun(const DRMGContext& context, DRTransferObserver& observer, DRInterrupt& interrupt);
    ~DRTransferRun();
    DRTransferRun(const DRTransferRun&) = delete;
    DRTransferRun& operator=(const DRTransferRun&) = delete;

    /// Moves the kinds (selection keys) of the loaded backup to the phone and waits for the end, in the event loop.
    [[nodiscard]] Result
    run(const DRMigrateIPhoneBackupEntryPointer& backup, const DRDCDevicePointer& phone, const QStringList& keys);

private:
    void observeStep();
    void tellWarnings();
    void onInterrupt();

    DRTransferObserver& m_observer;
    DRInterrupt& m_interrupt;
    std::unique_ptr<DRMGSequence> m_sequence;
    DRMGSequenceStepTransfer* m_step = nullptr;
    QEventLoop m_loop;
    Result m_result;
    bool m_hasBeenWarned = false;
    bool m_hasBeenInterrupted = false;
};
