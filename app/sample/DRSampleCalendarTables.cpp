#include "app/sample/DRSampleCalendarTables.h"

#include "app/sample/DRSampleGuid.h"
#include "platform/core/DRDates.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct Calendar {
    QStringView title;
    QStringView color;
    QStringView type;
    qint64 store; ///< 1 the phone itself, 2 subscribed calendars, 3 the address book's birthdays
};
constexpr std::array kCalendars{
    Calendar{u"Home", u"#1BADF8", u"local", 1},       Calendar{u"Work", u"#CC73E1", u"local", 1},
    Calendar{u"Holidays", u"#63DA38", u"local", 2},   Calendar{u"Birthdays", u"#8295AF", u"local", 3},
    Calendar{u"Empty \U0001F342", u"#FF9500", {}, 1},
};

constexpr qint64 kEventEntity = 2;
constexpr qint64 kParticipantEntity = 7;

template <typename Number> DRSqlValue nullable(const std::optional<Number>& number)
{
    return number ? DRSqlValue(*number) : DRSqlValue();
}

} // namespace

DRSampleCalendarTables::DRSampleCalendarTables(DRDatabase& database, DRSampleSettings settings)
    : m_database(database),
      m_settings(std::move(settings)),
      m_insertLocation(database.prepare(u"INSERT INTO Location (title, item_owner_id) VALUES (?, ?)"_s)),
      m_insertRecurrence(database.prepare(u"INSERT INTO Recurrence (frequency, interval, week_start, count, end_date, "
                                          "cached_end_date, owner_id, UUID) VALUES (?, ?, ?, 0, ?, ?, ?, ?)"_s)),
      m_insertAlarm(
          database.prepare(u"INSERT INTO Alarm (trigger_date, trigger_interval, type, owner_id, UUID, proximity, "
                           "disabled) VALUES (?, ?, 0, ?, ?, 0, 0)"_s)),
      m_insertParticipant(
          database.prepare(u"INSERT INTO Participant (entity_type, type, status, pending_status, role, identity_id, "
                           "owner_id, UUID, email, is_self) VALUES (?, 1, ?, 0, 1, ?, ?, ?, ?, ?)"_s)),
      m_insertIdentity(database.prepare(
          u"INSERT INTO Identity (display_name, address, first_name, last_name) VALUES (?, ?, ?, ?)"_s)),
      m_insertItem(database.prepare(
          u"INSERT INTO CalendarItem (ROWID, summary, description, start_date, start_tz, end_date, all_day, "
          "calendar_id, url, entity_type, due_all_day, has_recurrences, has_attendees, last_modified, "
          "unique_identifier, "
          "UUID, hidden, status, invitation_status, availability, priority) "
          "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?15, 0, 0, 0, 0, 0)"_s))
{
}

bool DRSampleCalendarTables::insertCalendars()
{
    DRStatement insert = m_database.prepare(
        u"INSERT INTO Calendar (ROWID, store_id, title, flags, color, type, supported_entity_types, display_order, "
        "UUID, sharing_status, is_published) VALUES (?1, ?2, ?3, 0, ?4, ?5, 4, ?1, ?6, 0, 0)"_s);
    return std::all_of(kCalendars.begin(), kCalendars.end(), [&](const Calendar& calendar) {
        const auto number = static_cast<qint64>(m_calendars.size()) + 1;
        const QString title = calendar.title.toString();
        m_calendars[title] = number;
        return insert.update({number, calendar.store, title, calendar.color.toString(),
                              calendar.type.isEmpty() ? QString() : calendar.type.toString(),
                              sampleGuid(u"calendar "_s + title)});
    });
}

bool DRSampleCalendarTables::insertEvents(const std::vector<DRSampleEvent>& events)
{
    return std::all_of(events.begin(), events.end(), [this](const auto& event) { return insertEvent(event); });
}

bool DRSampleCalendarTables::insertEvent(const DRSampleEvent& event)
{
    ++m_eventId;
    const auto all = [](const auto& list, const auto& insert) { return std::all_of(list.begin(), list.end(), insert); };
    return insertItem(event) && insertLocations(event.locations) &&
           all(event.recurrences, [this](const auto& recurrence) { return insertRecurrence(recurrence); }) &&
           all(event.alarms, [this](const auto& alarm) { return insertAlarm(alarm); }) &&
           all(event.guests, [this](const auto& guest) { return insertGuest(guest); });
}

bool DRSampleCalendarTables::insertItem(const DRSampleEvent& event)
{
    const double changed = DRDates::toReferenceSeconds(m_settings.moment.addDays(-1));
    return m_insertItem.update({m_eventId, event.title, event.notes, event.start, event.zone, event.end,
                                qint64{event.isAllDay}, m_calendars.at(event.calendar), event.url, kEventEntity,
                                qint64{event.isDueAllDay}, qint64{!event.recurrences.empty()},
                                qint64{!event.guests.empty()}, changed, sampleGuid(u"event %1"_s.arg(m_eventId))});
}

bool DRSampleCalendarTables::insertLocations(const QStringList& titles)
{
    return std::all_of(titles.begin(), titles.end(), [this](const QString& title) {
        return m_insertLocation.update({title, m_eventId});
    });
}

bool DRSampleCalendarTables::insertRecurrence(const DRSampleRecurrence& recurrence)
{
    return m_insertRecurrence.update({recurrence.frequency, recurrence.interval, recurrence.weekStart,
                                      nullable(recurrence.end), nullable(recurrence.cachedEnd), m_eventId,
                                      sampleGuid(u"recurrence %1"_s.arg(++m_rowCount))});
}

bool DRSampleCalendarTables::insertAlarm(const DRSampleAlarm& alarm)
{
    return m_insertAlarm.update({nullable(alarm.moment), nullable(alarm.secondsAfterStart), m_eventId,
                                 sampleGuid(u"alarm %1"_s.arg(++m_rowCount))});
}

bool DRSampleCalendarTables::insertGuest(const DRSampleGuest& guest)
{
    const auto identity = identityOf(guest);
    return identity && m_insertParticipant.update({kParticipantEntity, guest.status, *identity, m_eventId,
                                                   sampleGuid(u"participant %1"_s.arg(++m_rowCount)), guest.email,
                                                   qint64{guest.isSelf}});
}

/// The row of the guest's identity, 0 for one whom the store does not know; none on failure.
std::optional<qint64> DRSampleCalendarTables::identityOf(const DRSampleGuest& guest)
{
    if (!guest.hasIdentity || guest.email.isNull()) {
        return 0;
    }
    const QString address = u"mailto:"_s + guest.email;
    if (const auto known = m_identities.find(address); known != m_identities.end()) {
        return known->second;
    }
    if (!m_insertIdentity.update({guest.displayName, address, guest.firstName, guest.lastName})) {
        return {};
    }
    return m_identities[address] = m_database.lastInsertRowId();
}
