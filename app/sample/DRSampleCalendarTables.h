#pragma once

#include "app/sample/DRSampleEvent.h"
#include "app/sample/DRSampleSettings.h"
#include "platform/sqlite/DRDatabase.h"

#include <map>

/// Writes events into the tables of an iPhone's calendar store. Every operation answers false when a statement fails.
class DRSampleCalendarTables {
public:
    /// The database, with its tables, must outlive this object.
    DRSampleCalendarTables(DRDatabase& database, DRSampleSettings settings);

    /// The calendars of a phone that subscribes to holidays; nothing stands in the last one.
    [[nodiscard]] bool insertCalendars();

    /// The events in their order, each in the calendar of its name, which must be one of the above.
    [[nodiscard]] bool insertEvents(const std::vector<DRSampleEvent>& events);

private:
    [[nodiscard]] bool insertEvent(const DRSampleEvent& event);
    [[nodiscard]] bool insertItem(const DRSampleEvent& event);
    [[nodiscard]] bool insertLocations(const QStringList& titles);
    [[nodiscard]] bool insertRecurrence(const DRSampleRecurrence& recurrence);
    [[nodiscard]] bool insertAlarm(const DRSampleAlarm& alarm);
    [[nodiscard]] bool insertGuest(const DRSampleGuest& guest);
    [[nodiscard]] std::optional<qint64> identityOf(const DRSampleGuest& guest);

    DRDatabase& m_database;
    DRSampleSettings m_settings;
    std::map<QString, qint64> m_calendars;
    std::map<QString, qint64> m_identities; ///< row by address
    qint64 m_eventId = 0;                   ///< the event being inserted
    qint64 m_rowCount = 0;                  ///< of all kinds, for their UUIDs
    DRStatement m_insertLocation;
    DRStatement m_insertRecurrence;
    DRStatement m_insertAlarm;
    DRStatement m_insertParticipant;
    DRStatement m_insertIdentity;
    DRStatement m_insertItem;
};
