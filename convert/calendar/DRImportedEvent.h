#pragma once

#include "convert/calendar/DRIEventParticipant.h"
#include "convert/calendar/DRImportedAlarm.h"
#include "convert/calendar/DRImportedLocation.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

/// One event, on its way from the iPhone to the phone. Dates are moments in UTC, invalid when absent; texts are null when
/// absent.
struct DRImportedEvent {
    QString summary; ///< the title
    QString description;
    QDateTime startDate;
    QString timeZone; ///< the iPhone's name of the start's zone, such as "Europe/Berlin" or "_float"
    bool isAllDay = false;
    QDateTime endDate; ///< absent for all-day events
    QString url;       ///< not written to the phone
    std::optional<DRImportedLocation> location;
    std::vector<DRImportedAlarm> alarms;
    bool hasRecurrence = false;
    qint32 recurrenceFrequency = 0; ///< the iPhone's code: 1 daily, 2 weekly, 3 monthly, any other yearly
    qint32 recurrenceInterval = 0;  ///< in units of the frequency
    qint32 weekStart = 0;           ///< the iPhone's code of the day on which weeks begin; 0 when it has none
    QDateTime recurrenceEndDate;
    std::vector<DRIEventParticipant> participants;

    bool operator==(const DRImportedEvent&) const = default;
};
