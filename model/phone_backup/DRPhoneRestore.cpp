#include "model/phone_backup/DRPhoneRestore.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRTaskQueue.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/device/DRDCDevice.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/device/DRDCNotifications.h"

#include <QFileInfo>

#include <algorithm>
#include <any>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Ending = DRPhoneRestoreResult::Ending;

constexpr double kPhaseCount = 3.0;

/// Those of the packets that the folder does not hold as they are expected.
QStringList differentPackets(const std::map<QString, DRPacketFingerprint>& expected,
                             const QStringList& packetIDs,
                             const QString& folder)
{
    QStringList different = packetIDs;
    different.removeIf([&](const QString& packetID) {
        const auto wanted = expected.find(packetID);
        return wanted != expected.end() &&
               packetFingerprint(DRPhoneBackup::pathOfPacket(folder, packetID)) == wanted->second;
    });
    return different;
}

} // namespace

std::shared_ptr<DRPhoneRestore>
DRPhoneRestore::start(Request request, const DRMigrateServices& services, Observer& observer)
{
    auto restore = std::make_shared<DRPhoneRestore>(Token(), std::move(request), services, observer);
    restore->backUp();
    return restore;
}

DRPhoneRestore::DRPhoneRestore(Token /*token*/, Request request, const DRMigrateServices& services, Observer& observer)
    : m_request(std::move(request)), m_services(services), m_observer(&observer)
{
}

void DRPhoneRestore::cancel()
{
    if (m_phase == Phase::BackUp) {
        m_observer = nullptr;
        m_progress.reset();
    }
}

DRBRBackupInfo DRPhoneRestore::description(const QString& folder, const QStringList& packetIDs) const
{
    DRBRBackupInfo info;
    info.setTargetPath(folder);
    info.setBackupDate(m_request.keptDate);
    info.setBackupName(m_request.keptName);
    info.setDeviceSoftwareVersion(m_request.phone->appProductRevision());
    info.setApplicationSoftwareVersion(m_request.applicationVersion);
    info.addPacketsToBackup(packetIDs);
    return info;
}

QStringList DRPhoneRestore::sortOrder() const
{
    return m_services.backupRestoreController.dataTypesDefaultSortOrder();
}

DRDCDeviceTaskPointer DRPhoneRestore::newTask(Phase phase)
{
    m_phase = phase;
    m_observer->phaseChanged(phase);
    m_task = m_request.phone->requestTask();
    m_progress = m_services.notificationCenter.observe(
        DRDCNotifications::kTaskDidUpdate, [this](const DRNotification& notification) {
            const auto* task = std::any_cast<DRDCDeviceTaskPointer>(&notification.object);
            if (task != nullptr && *task == m_task) {
                m_observer->progressed((static_cast<double>(m_phase) + m_task->progress()) / kPhaseCount);
            }
        });
    return m_task;
}

void DRPhoneRestore::backUp()
{
    const QString folder =
        m_services.backupRestoreController.pathToBackupFolderWithDevice(*m_request.phone, m_request.keptDate);
    newTask(Phase::BackUp)
        ->backupPacketsWithDevice(
            m_request.phone, description(folder, m_request.plan.packetIDs()), sortOrder(),
            [self = shared_from_this(), folder](const DRDCTaskResult& result) { self->didBackUp(folder, result); });
}

void DRPhoneRestore::didBackUp(const QString& folder, const DRDCTaskResult& result)
{
    if (m_observer == nullptr) {
        return;
    }
    if (!m_request.phone->isConnected()) {
        end(Ending::PhoneGone);
        return;
    }
    if (result.hasErrors()) {
        m_result.failures = result.failures;
        end(Ending::NotKept);
        return;
    }
    m_result.keptPath = folder;
    m_result.missingBytes = missingBytes();
    if (m_result.missingBytes > 0) {
        end(Ending::NotEnoughSpace);
        return;
    }
    restore();
}

/// One packet gives its room to the one that replaces it, in the order of work: so the greatest growth on the way
/// counts, not that at the end.
quint64 DRPhoneRestore::missingBytes() const
{
    qint64 growth = 0;
    qint64 greatestGrowth = 0;
    for (const DRPhoneBackup::App& app : m_request.plan.apps) {
        growth += static_cast<qint64>(app.sizeBytes) -
                  QFileInfo(DRPhoneBackup::pathOfPacket(m_result.keptPath, app.packetID)).size();
        greatestGrowth = std::max(greatestGrowth, growth);
    }
    const auto needed = static_cast<quint64>(greatestGrowth);
    const quint64 free = m_request.phone->preferredFilesystem().memoryFreeBytes();
    return needed > free ? needed - free : 0;
}

void DRPhoneRestore::restore()
{
    newTask(Phase::Restore)
        ->restorePacketsWithDevice(
            m_request.phone, description(m_request.plan.backup.path, m_request.plan.packetIDs()), sortOrder(),
            [self = shared_from_this()](const DRDCTaskResult& result) { self->didRestore(result); });
}

void DRPhoneRestore::didRestore(const DRDCTaskResult& result)
{
    m_result.failures = result.failures;
    // What was read before is gone: the folder was changed meanwhile.
    m_result.failures.insert(m_result.failures.end(), result.skipped.begin(), result.skipped.end());
    m_written = m_request.plan.packetIDs();
    for (const DRDCPacketProblem& failure : m_result.failures) {
        m_written.removeAll(failure.packetID);
    }
    if (m_written.isEmpty()) {
        end(Ending::Failed);
        return;
    }
    verify();
}

void DRPhoneRestore::verify()
{
    newTask(Phase::Verify)
        ->backupPacketsWithDevice(
            m_request.phone, description(m_request.checkFolder, m_written), sortOrder(),
            [self = shared_from_this()](const DRDCTaskResult& result) { self->didFetchAgain(result); });
}

void DRPhoneRestore::didFetchAgain(const DRDCTaskResult& result)
{
    for (const DRDCPacketProblem& failure : result.failures) {
        if (m_written.removeAll(failure.packetID) > 0) {
            m_result.failures.push_back(
                {failure.packetID, u"it was written, but could not be verified: "_s + failure.reason});
        }
    }
    m_services.taskQueue.runInBackground([self = shared_from_this(), packetIDs = m_written]() mutable {
        const QStringList different =
            differentPackets(self->m_request.plan.fingerprints, packetIDs, self->m_request.checkFolder);
        DRTaskQueue& queue = self->m_services.taskQueue;
        queue.runOnMainThread([self = std::move(self), different] { self->didCompare(different); });
    });
}

void DRPhoneRestore::didCompare(const QStringList& different)
{
    for (const QString& packetID : std::as_const(m_written)) {
        if (different.contains(packetID)) {
            m_result.failures.push_back({packetID, u"the phone does not hold what was written to it"_s});
        } else {
            m_result.putBack.append(packetID);
        }
    }
    end(m_result.failures.empty() ? Ending::PutBack : Ending::Failed);
}

void DRPhoneRestore::end(Ending ending)
{
    m_result.ending = ending;
    m_progress.reset();
    m_task.reset();
    std::exchange(m_observer, nullptr)->ended(m_result);
}
