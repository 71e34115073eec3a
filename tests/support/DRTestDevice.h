#pragma once

#include "platform/core/DRNotificationCenter.h"
#include "platform/device/DRBRBackupInfo.h"
#include "platform/device/DRDCDevice.h"
#include "platform/device/DRDCDeviceTask.h"
#include "platform/device/DRDCFilesystem.h"
#include "platform/device/DRDCNotifications.h"

#include <memory>
#include <utility>
#include <vector>

/// A task that keeps what it was asked to do and ends when a test says so, with the result that the test decides.
class DRTestDeviceTask final : public DRDCDeviceTask {
public:
    enum class Work { None, Backup, Restore, Copy };

    explicit DRTestDeviceTask(DRNotificationCenter& center) : m_center(center) {}

    [[nodiscard]] double progress() const override { return m_progress; }
    void setProgress(double progress) { m_progress = progress; }

    void backupPacketsWithDevice(const DRDCDevicePointer&,
                                 const DRBRBackupInfo& backupInfo,
                                 const QStringList& sortOrder,
                                 PacketHandler handler) override
    {
        keep(Work::Backup, backupInfo, sortOrder, std::move(handler));
    }

    void restorePacketsWithDevice(const DRDCDevicePointer&,
                                  const DRBRBackupInfo& backupInfo,
                                  const QStringList& sortOrder,
                                  PacketHandler handler) override
    {
        keep(Work::Restore, backupInfo, sortOrder, std::move(handler));
    }

    void syncContentWithDevice(const DRDCDevicePointer&,
                               DRDCFilesystem&,
                               const std::vector<DRDCFilePointer>& contentFilesToCopy,
                               const QStringList&,
                               FileHandler handler) override
    {
        m_work = Work::Copy;
        m_files = contentFilesToCopy;
        m_fileHandler = std::move(handler);
    }

    /// Ends a backup or restore: posts the event of each packet that neither failed nor was skipped, then calls the
    /// handler.
    void finishPackets(const DRDCTaskResult& result = {})
    {
        for (const QString& packetID : m_backupInfo.packetIDs()) {
            if (!isNamed(result.failures, packetID) && !isNamed(result.skipped, packetID)) {
                m_center.post({.name = m_work == Work::Backup ? DRDCNotifications::kDidFinishBackupPacket
                                                              : DRDCNotifications::kDidFinishRestorePacket,
                               .object = {},
                               .userInfo = {{DRDCNotifications::kBackupPacketKey, packetID}}});
            }
        }
        std::exchange(m_packetHandler, nullptr)(result);
    }

    /// Ends a copy: with nothing failed, or with one failure per reason.
    void finishCopy(const QStringList& reasons = {})
    {
        std::vector<DRDCFileFailure> failures;
        for (const QString& reason : reasons) {
            failures.push_back({.file = m_files.front(), .reason = reason});
        }
        std::exchange(m_fileHandler, nullptr)(failures);
    }

    [[nodiscard]] Work work() const { return m_work; }
    [[nodiscard]] const DRBRBackupInfo& backupInfo() const { return m_backupInfo; }
    [[nodiscard]] const QStringList& sortOrder() const { return m_sortOrder; }
    [[nodiscard]] const std::vector<DRDCFilePointer>& files() const { return m_files; }

private:
    void keep(Work work, const DRBRBackupInfo& backupInfo, const QStringList& sortOrder, PacketHandler handler)
    {
        m_work = work;
        m_backupInfo = backupInfo;
        m_sortOrder = sortOrder;
        m_packetHandler = std::move(handler);
    }

    static bool isNamed(const std::vector<DRDCPacketProblem>& problems, const QString& packetID)
    {
        for (const DRDCPacketProblem& problem : problems) {
            if (problem.packetID == packetID) {
                return true;
            }
        }
        return false;
    }

    DRNotificationCenter& m_center;
    double m_progress = 0.0;
    Work m_work = Work::None;
    DRBRBackupInfo m_backupInfo;
    QStringList m_sortOrder;
    std::vector<DRDCFilePointer> m_files;
    PacketHandler m_packetHandler;
    FileHandler m_fileHandler;
};

/// A phone whose traits a test sets and whose tasks it ends. It is its own file system.
class DRTestDevice final : public DRDCDevice, public DRDCFilesystem {
public:
    explicit DRTestDevice(DRNotificationCenter& center) : m_center(center) {}

    bool connected = true;
    QString name = QStringLiteral("Test Phone"); ///< that it is sold under
    quint32 baseVersion = 4;
    quint32 stateFlags = kStateFlagReady;
    QStringList packets;
    quint64 freeBytes = 0;
    quint64 usableCapacity = 0;
    quint64 usableFreeBytes = 0;
    std::vector<std::shared_ptr<DRTestDeviceTask>> tasks; ///< all that were requested, in order

    [[nodiscard]] bool isConnected() const override { return connected; }
    [[nodiscard]] QString identifier() const override { return QStringLiteral("test-phone"); }
    [[nodiscard]] QString marketingName() const override { return name; }
    [[nodiscard]] quint32 androidBaseVersion() const override { return baseVersion; }
    [[nodiscard]] QString appProductRevision() const override { return QStringLiteral("1.2.3"); }
    [[nodiscard]] quint32 deviceStateFlags() const override { return stateFlags; }
    [[nodiscard]] QStringList backupPackets() const override { return packets; }
    [[nodiscard]] DRDCFilesystem& preferredFilesystem() override { return *this; }
    [[nodiscard]] quint64 memoryFreeBytes() const override { return freeBytes; }
    [[nodiscard]] quint64 memoryUsableCapacity() const override { return usableCapacity; }
    [[nodiscard]] quint64 memoryUsableFreeBytes() const override { return usableFreeBytes; }
    [[nodiscard]] QString defaultPathForFile(const DRDCFile&) const override { return QStringLiteral("Music"); }
    [[nodiscard]] std::shared_ptr<DRDCDeviceTask> requestTask() override
    {
        tasks.push_back(std::make_shared<DRTestDeviceTask>(m_center));
        return tasks.back();
    }

private:
    DRNotificationCenter& m_center;
};
