#pragma once

#include <vector>

#include <QJsonObject>

#include "app/cli/DRCommandOutcome.h"
#include "app/cli/DRKindContent.h"
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

        QString key;
        Weight weight = Weight::Skipped; ///< a note for what is not in the backup, or what nobody asked for by name
        QString why;
    };

    std::vector<Kind> kinds;
    std::vector<Unmoved> unmoved;
    QStringList repeated;     ///< keys that went from this backup to this phone before
    QStringList otherBackups; ///< keys that went there from another backup of the same iPhone
    bool isLedgerDamaged = false;
    quint64 bytesNeeded = 0;
    quint64 bytesFree = 0;

    [[nodiscard]] static DRTransferPlan make(const Request& request,
                                             const DRMigrateIPhoneBackupEntry& backup,
                                             const DRDCDevicePointer& phone,
                                             const DRMigrateServices& services,
                                             const DRTransferLedger& ledger);

    /// The selection keys that move.
    [[nodiscard]] QStringList keys() const;

    /// Why a transfer after this plan would be refused; Done when it would not. A repeat is no reason when `again` was
    /// given.
    enum class Repeats { Refused, Allowed };
    [[nodiscard]] DRCommandOutcome refusal(Repeats repeats) const;

    /// What a person should know before the start, such as kinds that are left out.
    [[nodiscard]] QStringList notes() const;

    /// For people: a table of what moves where, and the notes.
    [[nodiscard]] QString text() const;

    /// The values of the plan's JSON line, without its type.
    [[nodiscard]] QJsonObject json() const;
};
