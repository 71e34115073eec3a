#include "wizard/DRPhoneUndo.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "platform/core/DRClock.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/device/DRDCDevice.h"
#include "wizard/DRDateText.h"
#include "wizard/DRTransferLedger.h"

#include <atomic>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Phase = DRPhoneRestore::Phase;
using PutBack = DRTransferLedger::PutBack;

DRPhoneRestore::Request
requestFor(const DRPhoneUndo::Setup& setup, const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan)
{
    const auto ledger = DRTransferLedger::ofFile(setup.ledgerPath);
    const QDateTime date = ledger.timeAfterLast(phone->identifier(), setup.services.clock.now());
    return {.phone = phone,
            .plan = plan,
            .keptName = u"Before Restore %1"_s.arg(mediumDateText(date)),
            .keptDate = date,
            .applicationVersion = setup.applicationVersion,
            .checkFolder = DRMigrateUtils::pathToInflateFolder(setup.services.folders.temporary) + u"/verify"_s};
}

bool note(PutBack what, const QStringList& packetIDs, const DRPhoneRestore::Request& request, const QString& ledgerPath)
{
    return DRTransferLedger::ofFile(ledgerPath)
        .notePutBack(what, request.plan.dataTypesWhollyIn(packetIDs), request.phone->identifier(),
                     request.plan.backup.date, request.keptDate);
}

} // namespace

struct DRPhoneUndo::Check {
    DRPhoneRestorePlan plan;
    std::function<void(const DRPhoneRestorePlan&)> done;
    std::atomic<bool> isCancelled = false;
};

DRPhoneUndo::DRPhoneUndo(Setup setup, DRPhoneRestore::Observer& observer)
    : m_setup(std::move(setup)), m_observer(observer)
{
}

DRPhoneUndo::~DRPhoneUndo()
{
    cancel();
}

void DRPhoneUndo::check(const DRPhoneRestorePlan& plan, std::function<void(const DRPhoneRestorePlan&)> done)
{
    m_check = std::make_shared<Check>();
    m_check->plan = plan;
    m_check->done = std::move(done);
    m_setup.services.taskQueue.runInBackground([check = m_check, &queue = m_setup.services.taskQueue] {
        check->plan.check([&check] { return check->isCancelled.load(); });
        queue.runOnMainThread([check] {
            if (!check->isCancelled) {
                check->done(check->plan);
            }
        });
    });
}

void DRPhoneUndo::start(const DRDCDevicePointer& phone, const DRPhoneRestorePlan& plan)
{
    clearWorkingFolder(); // an earlier run may have been killed
    m_request = requestFor(m_setup, phone, plan);
    m_restore = DRPhoneRestore::start(m_request, m_setup.services, *this);
}

void DRPhoneUndo::cancel()
{
    if (m_check) {
        m_check->isCancelled = true;
    }
    if (m_restore) {
        m_restore->cancel();
    }
}

QString DRPhoneUndo::keptPath() const
{
    return m_restore ? m_restore->keptPath() : QString();
}

void DRPhoneUndo::phaseChanged(Phase phase)
{
    if (phase == Phase::Restore) {
        m_isNoted = note(PutBack::Begins, m_request.plan.packetIDs(), m_request, m_setup.ledgerPath);
    }
    m_observer.phaseChanged(phase);
}

void DRPhoneUndo::progressed(double fraction)
{
    m_observer.progressed(fraction);
}

void DRPhoneUndo::ended(const DRPhoneRestoreResult& result)
{
    m_isNoted = note(PutBack::IsDone, result.putBack, m_request, m_setup.ledgerPath) && m_isNoted;
    clearWorkingFolder();
    m_observer.ended(result);
}

void DRPhoneUndo::clearWorkingFolder() const
{
    if (!DRMigrateUtils::clearTempFolder(m_setup.services.folders.temporary)) {
        m_setup.filesAreLeft();
    }
}
