#include "convert/calendar/DREventDetails.h"

#include "convert/calendar/DRCalendarTable.h"
#include "platform/core/DRDates.h"
#include "platform/sqlite/DRSqlText.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Values up to here stand for "without end".
constexpr double kNoEnd = 1.0;

/// Hands every row to `take` with its key. False when the table is there but cannot be read to its end.
template <typename Take> bool forEachRow(DRDatabase& database, const char* table, const char* key, Take take)
{
    if (!DRCalendarTable::hasColumn(database, table, key)) {
        return true;
    }
    DRResultSet row = DRCalendarTable::rowsWithKey(database, table, key);
    while (row.next()) {
        take(row.integer(key), row);
    }
    return !row.hasFailed();
}

QDateTime recurrenceEnd(const DRResultSet& row)
{
    for (const char* column : {"cached_end_date", "end_date"}) {
        if (const double end = row.real(column); !row.isNull(column) && end > kNoEnd) {
            return DRDates::fromReferenceSeconds(end);
        }
    }
    return {};
}

/// Null when the identity has no name at all.
QString nameInIdentity(const DRResultSet& row)
{
    QString first = row.string("first_name");
    QString last = row.string("last_name");
    if (!first.isNull() && !last.isNull()) {
        return first + u' ' + last;
    }
    if (!first.isNull()) {
        return first;
    }
    return last.isNull() ? row.string("display_name") : last;
}

/// The column of the events' ROWIDs in `Alarm`, which newer systems renamed; null when it has none.
const char* ownerOfAlarms(DRDatabase& database)
{
    for (const char* owner : {"owner_id", "calendaritem_owner_id"}) {
        if (DRCalendarTable::hasColumn(database, "Alarm", owner)) {
            return owner;
        }
    }
    return nullptr;
}

} // namespace

DREventDetails DREventDetails::read(DRDatabase& database)
{
    DREventDetails details;
    details.readLocations(database);
    details.m_recurrencesByOwner = details.readRecurrences(database, "owner_id");
    details.m_recurrencesByEvent = details.readRecurrences(database, "event_id");
    details.readAlarms(database);
    details.readParticipants(database);
    details.readIdentities(database);
    return details;
}

void DREventDetails::readLocations(DRDatabase& database)
{
    const bool isRead = forEachRow(database, "Location", "item_owner_id", [this](qint64 owner, const DRResultSet& row) {
        if (!m_locations.contains(owner)) {
            m_locations.insert(owner, {.title = row.string("title")});
        }
    });
    m_isComplete = m_isComplete && isRead;
}

DREventDetails::Recurrences DREventDetails::readRecurrences(DRDatabase& database, const char* owner)
{
    Recurrences recurrences;
    const bool isRead = forEachRow(database, "Recurrence", owner, [&](qint64 eventId, const DRResultSet& row) {
        if (!recurrences.contains(eventId)) {
            recurrences.insert(eventId, {.frequency = static_cast<qint32>(row.integer("frequency")),
                                         .interval = static_cast<qint32>(row.integer("interval")),
                                         .weekStart = static_cast<qint32>(row.integer("week_start")),
                                         .endDate = recurrenceEnd(row)});
        }
    });
    m_isComplete = m_isComplete && isRead;
    return recurrences;
}

void DREventDetails::readAlarms(DRDatabase& database)
{
    const char* ownerColumn = ownerOfAlarms(database);
    if (ownerColumn == nullptr) {
        m_unownedAlarmCount = DRCalendarTable::rowCount(database, "Alarm");
        return;
    }
    const bool isRead = forEachRow(database, "Alarm", ownerColumn, [this](qint64 owner, const DRResultSet& row) {
        const bool isRelative = row.isNull("trigger_date");
        m_alarms[owner].push_back({.date = isRelative ? std::nullopt : std::optional(row.real("trigger_date")),
                                   .secondsAfterStart = row.integer("trigger_interval")});
    });
    m_isComplete = m_isComplete && isRead;
}

void DREventDetails::readParticipants(DRDatabase& database)
{
    const bool isRead = forEachRow(database, "Participant", "owner_id", [this](qint64 owner, const DRResultSet& row) {
        m_participants[owner].push_back(
            {.status = row.integer("status"), .email = row.string("email"), .isSelf = row.integer("is_self") != 0});
    });
    m_isComplete = m_isComplete && isRead;
}

void DREventDetails::readIdentities(DRDatabase& database)
{
    if (!DRCalendarTable::hasColumn(database, "Identity", "address")) {
        return;
    }
    DRResultSet row = database.executeQuery(u"SELECT * FROM Identity"_s);
    while (row.next()) {
        const QString address = row.string("address");
        if (!address.isNull() && !m_namesByAddress.contains(address)) {
            m_namesByAddress.insert(address, nameInIdentity(row));
        }
    }
    m_isComplete = m_isComplete && !row.hasFailed();
}

void DREventDetails::addTo(DRImportedEvent& event, qint64 eventId, double startSeconds) const
{
    if (const auto location = m_locations.constFind(eventId); location != m_locations.cend()) {
        event.location = *location;
    }
    addRecurrence(event, eventId);
    addAlarms(event, eventId, startSeconds);
    addParticipants(event, eventId);
}

void DREventDetails::addRecurrence(DRImportedEvent& event, qint64 eventId) const
{
    const Recurrences& rows = m_recurrencesByOwner.contains(eventId) ? m_recurrencesByOwner : m_recurrencesByEvent;
    const auto recurrence = rows.constFind(eventId);
    if (recurrence == rows.cend()) {
        return;
    }
    event.hasRecurrence = true;
    event.recurrenceFrequency = recurrence->frequency;
    event.recurrenceInterval = recurrence->interval;
    event.weekStart = recurrence->weekStart;
    event.recurrenceEndDate = recurrence->endDate;
}

void DREventDetails::addAlarms(DRImportedEvent& event, qint64 eventId, double startSeconds) const
{
    const auto alarms = m_alarms.constFind(eventId);
    if (alarms == m_alarms.cend()) {
        return;
    }
    for (const Alarm& alarm : *alarms) {
        const double seconds = alarm.date.value_or(startSeconds + static_cast<double>(alarm.secondsAfterStart));
        event.alarms.push_back({.date = DRDates::fromReferenceSeconds(seconds)});
    }
}

void DREventDetails::addParticipants(DRImportedEvent& event, qint64 eventId) const
{
    const auto rows = m_participants.constFind(eventId);
    if (rows == m_participants.cend()) {
        return;
    }
    QString ownAddress;
    for (const Participant& row : *rows) {
        if (row.email.isNull()) {
            continue;
        }
        if (row.isSelf) {
            ownAddress = row.email;
            continue;
        }
        event.participants.push_back({.name = nameOf(row.email), .email = row.email, .status = row.status});
    }
    if (!ownAddress.isNull()) {
        std::erase_if(event.participants, [&](const DRIEventParticipant& participant) {
            return participant.email.compare(ownAddress, Qt::CaseInsensitive) == 0;
        });
    }
}

/// The address is compared as what it means between the single quotes of a statement.
QString DREventDetails::nameOf(const QString& email) const
{
    const auto address = DRSqlText::insideSingleQuotes(u"mailto:"_s + email);
    const QString name = address ? m_namesByAddress.value(*address) : QString();
    return name.isNull() ? email : name;
}
