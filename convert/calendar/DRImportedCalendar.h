#pragma once

#include "convert/calendar/DRImportedEvent.h"

#include <QString>

#include <memory>
#include <vector>

/// One calendar of the iPhone with its events.
struct DRImportedCalendar {
    QString name; ///< not written to the phone
    std::vector<DRImportedEvent> calendarEvents;

    bool operator==(const DRImportedCalendar&) const = default;
};

/// An immutable, shared list of calendars; never null.
using DRImportedCalendars = std::shared_ptr<const std::vector<DRImportedCalendar>>;
