#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "platform/device/DRDCDevice.h"
#include "platform/device/DRDCFile.h"

class DRBRBackupInfo;

/// A packet that a task could not deal with, and why, for a person to read.
struct DRDCPacketProblem {
    QString packetID;
    QString reason;

    bool operator==(const DRDCPacketProblem&) const = default;
};

/// The outcome of a backup or restore of packets.
struct DRDCTaskResult {
    std::vector<DRDCPacketProblem> failures; ///< packets that failed
    std::vector<DRDCPacketProblem>
        skipped; ///< packets left as they were on the phone, because there was nothing to restore

    [[nodiscard]] bool hasErrors() const { return !failures.empty(); }

    /// The packet IDs of the failures.
    [[nodiscard]] QStringList packetsWithErrors() const;
};

/// A file that could not be copied, and why, for a person to read.
struct DRDCFileFailure {
    DRDCFilePointer file;
    QString reason;
};

/// The files that could not be copied; none at all for a copy that had nothing to do.
using DRDCFileFailures = std::optional<std::vector<DRDCFileFailure>>;

/// One piece of work on a phone, run once. It works in the background; its events (DRDCNotifications.h) and its handler
/// arrive on the main thread, the handler once and last, also when the phone vanishes. Once started it keeps itself,
/// the phone and the files alive until the handler has returned, so whoever started it may let go of it.
class DRDCDeviceTask {
public:
    using PacketHandler = std::function<void(const DRDCTaskResult&)>;
    using FileHandler = std::function<void(const DRDCFileFailures&)>;

    virtual ~DRDCDeviceTask() = default;

    /// A text by which observers recognise the task in its events.
    void setTaskID(const QString& taskID) { m_taskID = taskID; }
    [[nodiscard]] const QString& taskID() const { return m_taskID; }

    /// How much of the work is done, 0 to 1, by bytes. Main thread.
    [[nodiscard]] virtual double progress() const = 0;

    /// Fetches every packet of the description into its target path, in the order of the data-type keys in `sortOrder`
    /// (others last), and writes BackupData.plist there. A packet file is there whole or not at all. The phone is only
    /// read.
    virtual void backupPacketsWithDevice(const DRDCDevicePointer& device,
                                         const DRBRBackupInfo& backupInfo,
                                         const QStringList& sortOrder,
                                         PacketHandler handler) = 0;

    /// Replaces each packet of the description on the phone by the one below its target path, whole or not at all. A
    /// packet without a file there is left as it is on the phone and reported as skipped.
    virtual void restorePacketsWithDevice(const DRDCDevicePointer& device,
                                          const DRBRBackupInfo& backupInfo,
                                          const QStringList& sortOrder,
                                          PacketHandler handler) = 0;

    /// Copies the files to their "TargetPath" on the phone's storage and deletes the other list's paths from it. Never
    /// overwrites a different file: that takes a free name such as "IMG_0001 (2).JPG"; an identical one is left as it
    /// is. A file that fails is named in the result, the others go on; nothing half-written stays under a final name.
    /// Files are copied in their order, and each that is on the phone has its "PlaceOnPhone" before the next is begun, so
    /// that a playlist can name the songs before it.
    virtual void syncContentWithDevice(const DRDCDevicePointer& device,
                                       DRDCFilesystem& filesystem,
                                       const std::vector<DRDCFilePointer>& contentFilesToCopy,
                                       const QStringList& deviceFilesToDelete,
                                       FileHandler handler) = 0;

private:
    QString m_taskID;
};

using DRDCDeviceTaskPointer = std::shared_ptr<DRDCDeviceTask>;
