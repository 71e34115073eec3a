#pragma once

#include "model/backup_entry/DRMigrateAppPacket.h"

class DRDatabase;
class DRMigrateIPhoneCalendar;

/// Appends events to the first calendar of the phone's calendar app, in "db/calendar.db" of its packet.
class DRMigrateAndroidCalendar final : public DRMigrateAppPacket {
public:
    using DRMigrateAppPacket::DRMigrateAppPacket;

    /// Appends every event of the source, which is a `DRMigrateIPhoneCalendar`, in one transaction; nothing recognises
    /// events that are there already. Recurring ones are continued in the computer's time zone. What cannot be written is left out, and told. A packet whose database lacks a table
    /// or column that is written, or takes none of the events, is ignored from then on, and told. False when the database
    /// cannot be opened or read, or the transaction is lost.
    [[nodiscard]] bool mergeDataFrom(const DRMigrateDataType& source) override;

protected:
    [[nodiscard]] Names names() const override;

private:
    [[nodiscard]] bool
    mergeCalendars(DRDatabase& database, const DRMigrateIPhoneCalendar& source, DRMigrateReport& outcome);
    [[nodiscard]] static QString
    writeCalendars(DRDatabase& database, const DRMigrateIPhoneCalendar& source, DRMigrateReport& outcome);
};
