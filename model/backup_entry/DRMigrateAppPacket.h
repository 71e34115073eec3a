#pragma once

#include "model/backup_entry/DRMigrateDataType.h"

/// The phone side of a kind that an app keeps: a packet that is expanded, changed and packed again as a whole. One that
/// cannot be changed rightly is left out of the restore, so that the phone keeps its own, and that is told.
class DRMigrateAppPacket : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Expands the packet. One without a manifest is ignored from then on: the phone would drop it, so its own stays.
    [[nodiscard]] bool load() override;

    /// Packs the packet, unless it is ignored.
    [[nodiscard]] bool save() override;

protected:
    /// How a person calls the app and what it holds.
    struct Names {
        QString app;     ///< such as "The notes app"
        QString records; ///< such as "notes"
    };
    [[nodiscard]] virtual Names names() const = 0;

    /// Reports, also in the log, that none of the records could be written.
    void skipAll(DRMigrateReport& outcome, const QString& why) const;

    /// The same, and ignores the packet from then on.
    void leaveAsItIs(DRMigrateReport& outcome, const QString& why);
};
