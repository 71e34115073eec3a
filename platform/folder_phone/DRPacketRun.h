#pragma once

#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRDCDeviceTask.h"
#include "platform/device/DRPacketOrder.h"
#include "platform/folder_phone/DRFolderPhonePackets.h"
#include "platform/folder_phone/DRPhoneBackupDescription.h"
#include "platform/folder_phone/DRTaskRun.h"

/// The names of the events of a backup or restore.
struct DRPacketEvents {
    QString willBegin;
    QString didFinish;
    QString willBeginDataType;
    QString didFinishDataType;
    QString willBeginPacket;
    QString didFinishPacket;
};

/// The backup or restore of packets; what the two have in common.
class DRPacketRun : public DRTaskRun {
public:
    /// What a backup or restore is asked to do. The device is held until the handler has returned.
    struct Request {
        DRDCDevicePointer device;
        DRBRBackupInfo backupInfo;
        QStringList sortOrder;
        DRDCDeviceTask::PacketHandler handler;
    };

    void willBegin() override;
    void itemWillBegin(std::size_t index) override;
    void itemDidEnd(std::size_t index, const DRStepOutcome& outcome) override;
    void didEnd() override;

protected:
    DRPacketRun(Request request, DRFolderPhonePackets packets, DRPacketEvents events, Post post);

    [[nodiscard]] std::size_t count() const { return m_positions.size(); }
    [[nodiscard]] const QString& packetID(std::size_t index) const { return m_positions[index].packetID; }
    [[nodiscard]] const DRBRBackupInfo& backupInfo() const { return m_request.backupInfo; }
    [[nodiscard]] const DRFolderPhonePackets& packets() const { return m_packets; }

private:
    void postDataType(const QString& name, const DRPacketPosition& position) const;
    void postPacket(const QString& name, const DRPacketPosition& position) const;

    Request m_request;
    DRFolderPhonePackets m_packets;
    DRPacketEvents m_events;
    Post m_post;
    std::vector<DRPacketPosition> m_positions;
    DRDCTaskResult m_result;
};

/// Fetches packets into the target folder of the description.
class DRPacketBackupRun final : public DRPacketRun {
public:
    DRPacketBackupRun(Request request, DRFolderPhonePackets packets, DRPhoneNames phone, Post post);

    [[nodiscard]] std::vector<quint64> prepare() override;
    [[nodiscard]] DRStepOutcome work(std::size_t index, const DRByteProgress& progress) override;

private:
    DRPhoneNames m_phone;
    bool m_hasFolder = false;
};

/// Puts packets from the target folder of the description onto the phone.
class DRPacketRestoreRun final : public DRPacketRun {
public:
    DRPacketRestoreRun(Request request, DRFolderPhonePackets packets, Post post);

    [[nodiscard]] std::vector<quint64> prepare() override;
    [[nodiscard]] DRStepOutcome work(std::size_t index, const DRByteProgress& progress) override;
};
