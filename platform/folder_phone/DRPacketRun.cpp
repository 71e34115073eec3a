#include "platform/folder_phone/DRPacketRun.h"

#include "platform/device/DRDCFile.h"
#include "platform/device/DRDCNotifications.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

DRPacketEvents backupEvents()
{
    return {
        .willBegin = DRDCNotifications::kWillBeginBackup,
        .didFinish = DRDCNotifications::kDidFinishBackup,
        .willBeginDataType = DRDCNotifications::kWillBeginBackupDataType,
        .didFinishDataType = DRDCNotifications::kDidFinishBackupDataType,
        .willBeginPacket = DRDCNotifications::kWillBeginBackupPacket,
        .didFinishPacket = DRDCNotifications::kDidFinishBackupPacket,
    };
}

DRPacketEvents restoreEvents()
{
    return {
        .willBegin = DRDCNotifications::kWillBeginRestore,
        .didFinish = DRDCNotifications::kDidFinishRestore,
        .willBeginDataType = DRDCNotifications::kWillBeginRestoreDataType,
        .didFinishDataType = DRDCNotifications::kDidFinishRestoreDataType,
        .willBeginPacket = DRDCNotifications::kWillBeginRestorePacket,
        .didFinishPacket = DRDCNotifications::kDidFinishRestorePacket,
    };
}

} // namespace

DRPacketRun::DRPacketRun(Request request, DRFolderPhonePackets packets, DRPacketEvents events, Post post)
    : m_request(std::move(request)),
      m_packets(std::move(packets)),
      m_events(std::move(events)),
      m_post(std::move(post)),
      m_positions(packetsInOrder(backupInfo().packetIDs(), m_request.sortOrder))
{
}

void DRPacketRun::willBegin()
{
    m_post(m_events.willBegin, {});
}

void DRPacketRun::itemWillBegin(std::size_t index)
{
    const DRPacketPosition& position = m_positions[index];
    if (position.isFirstOfDataType) {
        postDataType(m_events.willBeginDataType, position);
    }
    postPacket(m_events.willBeginPacket, position);
}

void DRPacketRun::itemDidEnd(std::size_t index, const DRStepOutcome& outcome)
{
    const DRPacketPosition& position = m_positions[index];
    switch (outcome.kind) {
    case DRStepOutcome::Kind::Done:
        postPacket(m_events.didFinishPacket, position);
        break;
    case DRStepOutcome::Kind::Skipped:
        m_result.skipped.push_back({.packetID = position.packetID, .reason = outcome.reason});
        break;
    case DRStepOutcome::Kind::Failed:
        m_result.failures.push_back({.packetID = position.packetID, .reason = outcome.reason});
        break;
    }
    if (position.isLastOfDataType) {
        postDataType(m_events.didFinishDataType, position);
    }
}

void DRPacketRun::didEnd()
{
    m_post(m_events.didFinish, {});
    if (m_request.handler) {
        m_request.handler(m_result);
    }
}

/// Packets that this program does not know belong to no data type, and are worked on without these events.
void DRPacketRun::postDataType(const QString& name, const DRPacketPosition& position) const
{
    if (!position.dataType.isEmpty()) {
        m_post(name, {{DRDCNotifications::kBackupDataTypeKey, position.dataType}});
    }
}

void DRPacketRun::postPacket(const QString& name, const DRPacketPosition& position) const
{
    m_post(name, {{DRDCNotifications::kBackupPacketKey, position.packetID}});
}

DRPacketBackupRun::DRPacketBackupRun(Request request, DRFolderPhonePackets packets, DRPhoneNames phone, Post post)
    : DRPacketRun(std::move(request), std::move(packets), backupEvents(), std::move(post)), m_phone(std::move(phone))
{
}

std::vector<quint64> DRPacketBackupRun::prepare()
{
    m_hasFolder = beginPhoneBackup(backupInfo(), m_phone);
    std::vector<quint64> sizes;
    for (std::size_t index = 0; index < count(); ++index) {
        sizes.push_back(packets().sizeOnPhone(packetID(index)));
    }
    return sizes;
}

DRStepOutcome DRPacketBackupRun::work(std::size_t index, const DRByteProgress& progress)
{
    if (!m_hasFolder) {
        return DRStepOutcome::failed(u"its folder \"%1\" cannot be made on the computer; make sure that you may write "
                                     u"there and that the disk is "
                                     "not full"_s.arg(backupInfo().targetPath()));
    }
    return packets().fetch(packetID(index), backupInfo().targetPath(), progress);
}

DRPacketRestoreRun::DRPacketRestoreRun(Request request, DRFolderPhonePackets packets, Post post)
    : DRPacketRun(std::move(request), std::move(packets), restoreEvents(), std::move(post))
{
}

std::vector<quint64> DRPacketRestoreRun::prepare()
{
    std::vector<quint64> sizes;
    for (std::size_t index = 0; index < count(); ++index) {
        const auto status =
            statusWithoutFollowing(DRFolderPhonePackets::pathBelow(backupInfo().targetPath(), packetID(index)));
        sizes.push_back(status ? static_cast<quint64>(status->st_size) : 0);
    }
    return sizes;
}

DRStepOutcome DRPacketRestoreRun::work(std::size_t index, const DRByteProgress& progress)
{
    return packets().restore(packetID(index), backupInfo().targetPath(), progress);
}
