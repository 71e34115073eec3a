#include "app/cli/DRTransferRun.h"

#include "app/cli/DRExitCode.h"
#include "app/DRInterrupt.h"
#include "model/packet/DRMigrateAndroidBackupEntry.h"
#include "wizard/DRMGStepKeys.h"

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

using Ending = DRTransferRun::Result::Ending;
using Phase = DRMGSequenceStepTransfer::Phase;

} // namespace

DRTransferRun::DRTransferRun(const DRMGContext& context, DRTransferObserver& observer, DRInterrupt& interrupt)
    : m_observer(observer),
      m_interrupt(interrupt),
      m_sequence(DRMGSequence::sequence(context)),
      m_step(qobject_cast<DRMGSequenceStepTransfer*>(m_sequence->stepForKey(DRMGStepKeys::kTransfer)))
{
}

DRTransferRun::~DRTransferRun()
{
    m_interrupt.setHandler({});
}

DRTransferRun::Result DRTransferRun::run(const DRMigrateIPhoneBackupEntryPointer& backup,
                                         const DRDCDevicePointer& phone,
                                         const QStringList& keys)
{
    m_sequence->parameters().setValue(DRMGSequence::kIPhoneBackupEntry, backup);
    m_sequence->parameters().setValue(DRMGSequence::kSelectedTypes, keys);
    observeStep();
    m_sequence->gotoTransferWithDevice(phone, backup->bytesNeededForSelectedTypes(keys));

    const DRSequenceStep* landedOn = m_sequence->currentStep();
    m_result.landedOn = landedOn == nullptr ? QString() : landedOn->key();
    if (m_result.landedOn == DRMGStepKeys::kTransfer && m_step->progressPhase() == Phase::NotStarted) {
        m_result.ending = Ending::PhoneGone;
        return m_result;
    }
    if (m_result.landedOn == DRMGStepKeys::kTransfer) {
        m_interrupt.setHandler([this] { onInterrupt(); });
        m_loop.exec();
        m_result.transfer = m_sequence->transferResult();
        return m_result;
    }
    if (m_result.landedOn == DRMGStepKeys::kComplete) {
        m_result.transfer = m_sequence->transferResult();
    }
    return m_result;
}

void DRTransferRun::observeStep()
{
    QObject::connect(m_step, &DRMGSequenceStepTransfer::progressPhaseChanged, &m_loop,
                     [this] { m_observer.phaseChanged(m_step->progressPhase()); });
    QObject::connect(m_step, &DRMGSequenceStepTransfer::progressChanged, &m_loop,
                     [this] { m_observer.progressed(m_step->progressFraction(), m_step->secondsRemaining()); });
    QObject::connect(m_step, &DRMGSequenceStepTransfer::restoreWillBegin, &m_loop, [this] {
        tellWarnings();
        m_observer.restoreWillBegin();
    });
    QObject::connect(m_sequence.get(), &DRSequence::currentStepChanged, &m_loop, [this] {
        const DRSequenceStep* step = m_sequence->currentStep();
        if (step != nullptr && step->key() == DRMGStepKeys::kComplete) {
            m_result.ending = Ending::Closed;
            m_loop.quit();
        }
    });
}

void DRTransferRun::tellWarnings()
{
    const auto entry = m_sequence->transferResult().phoneEntry;
    if (!entry || m_hasBeenWarned) {
        return;
    }
    m_hasBeenWarned = true;
    const auto backup =
        m_sequence->parameters().value<DRMigrateIPhoneBackupEntryPointer>(DRMGSequence::kIPhoneBackupEntry);
    QStringList told;
    for (const QString& key : entry->dataTypeKeys()) {
        const auto phoneSide = entry->dataTypeForKey(key);
        if (const auto iPhoneSide = backup->dataTypeForKey(phoneSide->sourceKey())) {
            told += iPhoneSide->report().warnings;
        }
        told += phoneSide->report().warnings;
    }
    told.removeDuplicates();
    for (const QString& warning : told) {
        m_observer.warned(warning);
    }
}

void DRTransferRun::onInterrupt()
{
    if (m_step->progressPhase() < Phase::Restore) {
        m_result.ending = Ending::Interrupted;
        m_sequence->cancel();
        m_loop.quit();
        return;
    }
    if (!m_hasBeenInterrupted) {
        m_hasBeenInterrupted = true;
        m_observer.interruptedWhileWriting();
        return;
    }
    m_observer.willBeAbandoned(m_sequence->transferResult().phoneBackupPath);
    std::_Exit(static_cast<int>(DRExitCode::Interrupted));
}
