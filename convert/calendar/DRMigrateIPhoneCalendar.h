#pragma once

#include "convert/calendar/DRImportedCalendar.h"
#include "model/backup_entry/DRMigrateDataType.h"

#include <memory>

/// Reads the calendars of an iPhone backup. Entries are one `std::shared_ptr<const DRImportedEvent>` for each event, into
/// `allCalendars`: they count the work, the phone's side takes the calendars.
class DRMigrateIPhoneCalendar final : public DRMigrateDataType {
public:
    using DRMigrateDataType::DRMigrateDataType;

    /// Reads "HomeDomain-Library/Calendar/Calendar.sqlitedb"; one without calendars is fine. False when the backup does not
    /// hold the database or nothing of it can be read. What is left out is told in the report.
    [[nodiscard]] bool load() override;

    /// The calendars in the order of their rows. To be read when no load is running.
    [[nodiscard]] const DRImportedCalendars& allCalendars() const { return m_allCalendars; }
    void setAllCalendars(DRImportedCalendars calendars) { m_allCalendars = std::move(calendars); }

private:
    [[nodiscard]] bool fail(const QString& why);

    DRImportedCalendars m_allCalendars = std::make_shared<std::vector<DRImportedCalendar>>();
};
