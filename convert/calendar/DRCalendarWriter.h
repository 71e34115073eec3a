#pragma once

#include "convert/calendar/DRCalendarInstance.h"
#include "convert/calendar/DRImportedCalendar.h"
#include "model/backup_entry/DRMigrateLosses.h"
#include "platform/sqlite/DRDatabase.h"

#include <optional>

class DRLocalCalendar;

/// Writes events into the phone's calendar database, inside a transaction of the caller.
class DRCalendarWriter {
public:
    /// `calendar`: in which recurring events are continued. It and the database must outlive this object.
    DRCalendarWriter(DRDatabase& database, const DRLocalCalendar& calendar);

    /// The calendar that takes all events: the phone's first, else a new local one, else number 1. None when the phone's
    /// calendars cannot be read.
    [[nodiscard]] std::optional<qint64> defaultCalendarId();

    /// Appends the calendar's events to the phone's calendar with this number.
    void insertCalendarWithEventsIntoAndroidDatabase(const DRImportedCalendar& calendar, qint64 defaultCalendarId);

    /// Appends an event with its attendees, instances and reminders. What cannot be written is left out and noted in
    /// `losses`; without the event itself nothing of it is written.
    void insertEventIntoAndroidDatabase(const DRImportedEvent& event, qint64 calendarId);

    /// Whether the transaction was lost, so that nothing more may be written.
    [[nodiscard]] bool isLost() const { return m_isLost; }

    /// Why the last row was refused or the transaction was lost; null when neither happened.
    [[nodiscard]] const QString& reason() const { return m_reason; }

    /// Events that were written.
    [[nodiscard]] qint64 eventCount() const { return m_eventCount; }
    [[nodiscard]] const DRMigrateLosses& losses() const { return m_losses; }

private:
    [[nodiscard]] qint64 insertLocalCalendar();
    [[nodiscard]] bool insertEventRow(const DRImportedEvent& event, const DREventSpan& span, qint64 calendarId);
    [[nodiscard]] qint64 insertAttendees(const DRImportedEvent& event, qint64 eventId);
    [[nodiscard]] qint64 insertInstances(const DRImportedEvent& event, const DREventSpan& span, qint64 eventId);
    [[nodiscard]] qint64 insertReminders(const DRImportedEvent& event, const DREventSpan& span, qint64 eventId);
    [[nodiscard]] bool insertInstance(const DRCalendarInstance& instance, qint64 eventId);
    [[nodiscard]] bool insertRow(DRStatement& statement, const DRSqlValues& values);
    void noteRefused(const DRImportedEvent& event, const QString& kind, qint64 count);

    DRDatabase& m_database;
    const DRLocalCalendar& m_calendar;
    qint64 m_eventCount = 0;
    DRMigrateLosses m_losses;
    QString m_reason;
    bool m_isLost = false;

    DRStatement m_insertEvent;
    DRStatement m_insertOwner;
    DRStatement m_insertInstance;
    DRStatement m_insertReminder;
    DRStatement m_insertAttendee;
    DRSqlValues m_instanceRow; ///< made once: there may be a million instances
};
