#pragma once

#include <vector>

#include "wizard/DRKindContent.h"
#include "wizard/DRTransferLedger.h"

/// What a transfer of a loaded backup to a phone would do: which kinds move and where to, which do not and why. Making
/// it touches neither phone nor disk.
struct DRTransferPlan {
    /// Which kinds were asked for, and whether by name: a kind that this program cannot read, or that
    /// cannot be had on this computer, counts as skipped only then.
    struct Request {
        QStringList keys;
        bool isByName = false;
    };

    struct Kind {
        QString key;
        DRKindContent content;
        QStringList packetIDs; ///< the app packets that it goes into; empty for files copied to the storage
    };

    struct Unmoved {
        enum class Weight { Skipped, Note };
        enum class Reason {
            NotSupported, ///< this program cannot read it
            NotInBackup,
            NotAvailable, ///< it cannot be had on this computer
            Unreadable,
            NoApp,           ///< the phone has no app for it
            AppNotSupported, ///< this program cannot write to the phone's app for it
        };

        QString key;
        Weight weight = Weight::Skipped; ///< a note for what is not in the backup, or what nobody asked for by name
        Reason reason = Reason::NotSupported;
        QString detail; ///< why one is not available or not readable, for a person; may be empty

        bool operator==(const Unmoved&) const = default;
    };

    std::vector<Kind> kinds;
    std::vector<Unmoved> unmoved;
    QStringList repeated;     ///< keys that went from this backup to this phone before
    QStringList otherBackups; ///< keys that went there from another backup of the same iPhone
    QString damagedLedger;    ///< the file of the ledger when that cannot be read, else null
    quint64 bytesNeeded = 0;
    quint64 bytesFree = 0;

    [[nodiscard]] static DRTransferPlan make(const Request& request,
                                             const DRMigrateIPhoneBackupEntry& backup,
                                             const DRDCDevicePointer& phone,
                                             const DRMigrateServices& services,
                                             const DRTransferLedger& ledger);

    /// The selection keys that move.
    [[nodiscard]] QStringList keys() const;

    /// Those of them that go into apps, which a second transfer would double even if the first one broke off. A file that
    /// is on the phone already is not copied again.
    [[nodiscard]] QStringList appKeys() const;

    /// The first thing that stands in a transfer's way. A repeat, or not knowing of one, is no obstacle when it is
    /// allowed.
    enum class Repeats { Refused, Allowed };
    enum class Obstacle { None, NothingMoves, LedgerDamaged, Repeated, NotEnoughSpace };
    [[nodiscard]] Obstacle obstacle(Repeats repeats) const;
};
