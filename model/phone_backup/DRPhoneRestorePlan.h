#pragma once

#include <functional>
#include <map>
#include <vector>

#include "model/packet/DRPacketFingerprint.h"
#include "model/phone_backup/DRPhoneBackup.h"
#include "platform/device/DRDCDeviceTask.h"

/// What putting a phone's apps back would do: which apps, which not and why. Made from a phone backup and a phone;
/// touches neither.
struct DRPhoneRestorePlan {
    enum class Obstacle {
        None,
        UnusableBackup,   ///< see `DRPhoneBackup::problem`
        OtherPhone,       ///< the backup is of another phone
        NothingToPutBack, ///< see `skipped`
        DamagedPackets,   ///< see `damaged`; only once `check` has been called
    };

    DRPhoneBackup backup;
    std::vector<DRPhoneBackup::App> apps;   ///< that go back, in the order of work
    std::vector<DRDCPacketProblem> skipped; ///< that were wanted and cannot go back, with the reason
    std::vector<DRDCPacketProblem> damaged; ///< that were wanted and cannot be read; nothing goes back then
    std::map<QString, DRPacketFingerprint> fingerprints; ///< of `apps`, by packet ID, as they were read
    bool isOtherPhone = false;

    /// `isWanted` tells of a packet ID whether the app is to go back.
    [[nodiscard]] static DRPhoneRestorePlan
    make(const DRPhoneBackup& backup, const DRDCDevice& phone, const std::function<bool(const QString&)>& isWanted);

    /// Reads every packet of `apps` to its end and fills `damaged` and `fingerprints`. Takes its time; for the
    /// background queue. Once `isStopped` answers true no further packet is read, and the plan is good for nothing.
    void check(const std::function<bool()>& isStopped = {});

    /// The first thing that stands in the way.
    [[nodiscard]] Obstacle obstacle() const;

    [[nodiscard]] QStringList packetIDs() const;
    [[nodiscard]] quint64 sizeBytes() const;

    /// The data-type keys of the backup all of whose apps are among these: what such a kind gained since is gone from the
    /// phone once they are back.
    [[nodiscard]] QStringList dataTypesWhollyIn(const QStringList& packetIDs) const;
};
