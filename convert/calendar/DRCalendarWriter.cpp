#include "convert/calendar/DRCalendarWriter.h"

#include "convert/calendar/DRRecurrence.h"

using namespace Qt::StringLiterals;

namespace {

// Values of the phone's columns.
constexpr qint64 kLocalCalendarColor = -13018477; ///< ARGB FF 39 5A 93
constexpr qint64 kOwnerAccess = 5000;
constexpr qint64 kYes = 1;
constexpr qint64 kDirty = 1; ///< not yet synchronised
constexpr qint64 kAccepted = 1;
constexpr qint64 kOrganizer = 2; ///< kept: the relationship of every attendee
constexpr qint64 kRequired = 1;
constexpr qint64 kAlert = 1;

constexpr qint64 kFallbackCalendar = 1;
constexpr qint64 kMillisecondsPerMinute = 60'000;

/// Stands for a missing address.
const QString kBlank = u" "_s;

DRSqlValue valueOf(const std::optional<qint64>& number)
{
    return number ? DRSqlValue(*number) : DRSqlValue();
}

DRSqlValue valueOf(bool flag)
{
    return flag ? qint64{1} : qint64{0};
}

std::optional<qint64> milliseconds(const QDateTime& date)
{
    return date.isValid() ? std::optional(date.toMSecsSinceEpoch()) : std::nullopt;
}

/// "event “Dentist” of 2014-03-09", in the computer's own time.
QString nameOf(const DRImportedEvent& event)
{
    constexpr qsizetype kLongestTitle = 40;
    const QString title = event.summary.simplified();
    const QString day = event.startDate.isValid() ? event.startDate.toLocalTime().toString(u"yyyy-MM-dd") : QString();
    return (title.isEmpty() ? u"event without a title"_s : u"event “%1”"_s.arg(title.left(kLongestTitle))) +
           (day.isEmpty() ? day : u" of "_s + day);
}

} // namespace

DRCalendarWriter::DRCalendarWriter(DRDatabase& database, const DRLocalCalendar& calendar)
    : m_database(database),
      m_calendar(calendar),
      m_losses(u"events and parts of them"_s),
      m_insertEvent(database.prepare(
          u"INSERT INTO Events (dirty, calendar_id, title, eventLocation, description, selfAttendeeStatus, dtstart, "
          "dtend, eventTimezone, duration, allDay, hasAlarm, rrule, lastDate, hasAttendeeData, organizer) VALUES "
          "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s)),
      m_insertOwner(database.prepare(u"INSERT INTO Attendees (event_id, attendeeEmail, attendeeStatus, "
                                     "attendeeRelationship, attendeeType) VALUES (?, ?, ?, ?, ?)"_s)),
      m_insertInstance(database.prepare(u"INSERT INTO Instances (event_id, begin, end, startDay, endDay, startMinute, "
                                        "endMinute) VALUES (?, ?, ?, ?, ?, ?, ?)"_s)),
      m_insertReminder(database.prepare(u"INSERT INTO Reminders (event_id, minutes, method) VALUES (?, ?, ?)"_s)),
      m_insertAttendee(database.prepare(u"INSERT INTO Attendees (event_id, attendeeName, attendeeEmail, "
                                        "attendeeStatus, attendeeRelationship, attendeeType) VALUES (?, ?, ?, ?, ?, "
                                        "?)"_s))
{
}

std::optional<qint64> DRCalendarWriter::defaultCalendarId()
{
    {
        DRResultSet calendar = m_database.executeQuery(u"SELECT * FROM Calendars"_s);
        if (calendar.next()) {
            return calendar.integer("_id");
        }
        if (calendar.hasFailed()) {
            m_reason = m_database.lastErrorMessage();
            return std::nullopt;
        }
    }
    return insertLocalCalendar();
}

qint64 DRCalendarWriter::insertLocalCalendar()
{
    DRStatement insert = m_database.prepare(
        u"INSERT INTO Calendars (account_name, account_type, name, calendar_displayName, calendar_color, "
        "calendar_access_level, visible, sync_events, ownerAccount, canOrganizerRespond) VALUES (?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?)"_s);
    const QString name = u"Phone Calendar"_s;
    const bool isInserted = insertRow(insert, {u"SYNCML_ORPHANED"_s, u"LOCAL"_s, name, name, kLocalCalendarColor,
                                               kOwnerAccess, kYes, kYes, kBlank, kYes});
    if (isInserted) {
        return m_database.lastInsertRowId();
    }
    m_losses.add(
        {.what = u"A calendar on the phone for the events, without which it may not show them"_s, .why = m_reason});
    return kFallbackCalendar;
}

void DRCalendarWriter::insertCalendarWithEventsIntoAndroidDatabase(const DRImportedCalendar& calendar,
                                                                   qint64 defaultCalendarId)
{
    for (const DRImportedEvent& event : calendar.calendarEvents) {
        if (m_isLost) {
            return;
        }
        insertEventIntoAndroidDatabase(event, defaultCalendarId);
    }
}

void DRCalendarWriter::insertEventIntoAndroidDatabase(const DRImportedEvent& event, qint64 calendarId)
{
    const DREventSpan span = DREventSpan::of(event);
    if (!insertEventRow(event, span, calendarId)) {
        m_losses.add({.what = u"The "_s + nameOf(event), .why = m_reason});
        return;
    }
    ++m_eventCount;
    const qint64 eventId = m_database.lastInsertRowId();
    const bool hasOwner = insertRow(m_insertOwner, {eventId, kBlank, kAccepted, kOrganizer, kRequired});
    noteRefused(event, u"The owner's place among the attendees"_s, hasOwner ? 0 : 1);
    noteRefused(event, u"Entries in the calendar"_s, insertInstances(event, span, eventId));
    noteRefused(event, u"Reminders"_s, insertReminders(event, span, eventId));
    noteRefused(event, u"Attendees"_s, insertAttendees(event, eventId));
}

bool DRCalendarWriter::insertEventRow(const DRImportedEvent& event, const DREventSpan& span, qint64 calendarId)
{
    QString rule;
    QString duration;
    std::optional<qint64> end = span.end;
    std::optional<qint64> lastDate = span.end;
    if (event.hasRecurrence) {
        rule = DRRecurrence::rule(event, m_calendar);
        duration = u"P%1S"_s.arg(DRRecurrence::durationSeconds(span));
        end = std::nullopt;
        lastDate = milliseconds(event.recurrenceEndDate);
    }
    return insertRow(m_insertEvent,
                     {kDirty, calendarId, event.summary, event.location ? event.location->title : QString(),
                      event.description, kAccepted, valueOf(span.begin), valueOf(end), event.timeZone, duration,
                      valueOf(event.isAllDay), valueOf(!event.alarms.empty()), rule, valueOf(lastDate), kYes, kBlank});
}

/// These three answer how many rows were refused.
qint64 DRCalendarWriter::insertInstances(const DRImportedEvent& event, const DREventSpan& span, qint64 eventId)
{
    qint64 refused = insertInstance(DRCalendarInstance::first(span, event.isAllDay), eventId) ? 0 : 1;
    // The phone's table holds each instance of an event once, and a step of 0 repeats the same one.
    const bool areRepeated = event.recurrenceInterval == 0;
    for (const DRCalendarInstance& instance : DRRecurrence::furtherInstances(event, m_calendar)) {
        if (!insertInstance(instance, eventId) && !areRepeated) {
            ++refused;
        }
    }
    return refused;
}

qint64 DRCalendarWriter::insertReminders(const DRImportedEvent& event, const DREventSpan& span, qint64 eventId)
{
    qint64 refused = 0;
    for (const DRImportedAlarm& alarm : event.alarms) {
        const qint64 before = DRCalendarTime::difference(span.begin.value_or(0), milliseconds(alarm.date).value_or(0));
        if (!insertRow(m_insertReminder, {eventId, before / kMillisecondsPerMinute, kAlert})) {
            ++refused;
        }
    }
    return refused;
}

qint64 DRCalendarWriter::insertAttendees(const DRImportedEvent& event, qint64 eventId)
{
    qint64 refused = 0;
    for (const DRIEventParticipant& participant : event.participants) {
        const QString email = participant.email.isNull() ? kBlank : participant.email;
        if (!insertRow(m_insertAttendee,
                       {eventId, participant.name, email, participant.status, kOrganizer, kRequired})) {
            ++refused;
        }
    }
    return refused;
}

bool DRCalendarWriter::insertInstance(const DRCalendarInstance& instance, qint64 eventId)
{
    m_instanceRow.assign({eventId, valueOf(instance.begin), valueOf(instance.end), instance.startDay, instance.endDay,
                          instance.startMinute, instance.endMinute});
    return insertRow(m_insertInstance, m_instanceRow);
}

/// Runs an insert; false when no row came of it, with the reason in `m_reason`.
bool DRCalendarWriter::insertRow(DRStatement& statement, const DRSqlValues& values)
{
    if (m_isLost) { // the row would stand alone
        return false;
    }
    if (statement.update(values)) {
        if (m_database.changedRowCount() == 1) {
            return true;
        }
        m_reason = u"the phone's database refused it"_s; // a trigger may ignore the row
        return false;
    }
    m_reason = m_database.lastErrorMessage();
    m_isLost = !m_database.isInTransaction();
    return false;
}

void DRCalendarWriter::noteRefused(const DRImportedEvent& event, const QString& kind, qint64 count)
{
    if (count > 0) {
        m_losses.add({.what = u"%1 of the %2: %3"_s.arg(kind, nameOf(event)).arg(count), .why = m_reason});
    }
}
