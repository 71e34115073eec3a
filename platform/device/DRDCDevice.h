#pragma once

#include <memory>

#include <QString>
#include <QStringList>

class DRDCDeviceTask;
class DRDCFilesystem;

/// One phone. All kinds of phones (in a folder, over a cable) are equal behind this interface; one conformance suite
/// holds for all. It may vanish at any moment, which `isConnected` and failed tasks tell. The traits answer on any
/// thread, the rest is called on the main thread.
class DRDCDevice {
public:
    /// The state flag of a phone that has been enumerated: its packets and storage are known.
    static constexpr quint32 kStateFlagReady = 4;

    virtual ~DRDCDevice() = default;

    /// Whether the phone is still there.
    [[nodiscard]] virtual bool isConnected() const = 0;

    /// Tells this phone from every other, also later; fit to be a file name.
    [[nodiscard]] virtual QString identifier() const = 0;

    /// The name that its maker sells it under.
    [[nodiscard]] virtual QString marketingName() const = 0;

    /// The first number of its Android version, such as 4.
    [[nodiscard]] virtual quint32 androidBaseVersion() const = 0;

    /// The revision of its backup software.
    [[nodiscard]] virtual QString appProductRevision() const = 0;

    /// The bits of the device's state; bit `kStateFlagReady` is the one that the wizard uses.
    [[nodiscard]] virtual quint32 deviceStateFlags() const = 0;
    [[nodiscard]] bool hasStateFlag(quint32 flag) const { return (deviceStateFlags() & flag) != 0; }

    /// The packet IDs that the phone offers, in ascending order.
    [[nodiscard]] virtual QStringList backupPackets() const = 0;

    /// The storage that media are copied to; never null, lives as long as the device.
    [[nodiscard]] virtual DRDCFilesystem& preferredFilesystem() = 0;

    /// A new task of this phone.
    [[nodiscard]] virtual std::shared_ptr<DRDCDeviceTask> requestTask() = 0;
};

using DRDCDevicePointer = std::shared_ptr<DRDCDevice>;
