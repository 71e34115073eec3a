#include "app/sample/DRSamplePhoneCalendar.h"

#include "app/sample/DRSampleDatabase.h"
#include "app/sample/DRSamplePhone.h"
#include "platform/sqlite/DRDatabase.h"

#include <QDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMillisecondsPerMinute = 60'000;
constexpr qint64 kMillisecondsPerDay = 86'400'000;
constexpr qint64 kJulianDayOf1970 = 2'440'588;

struct Event {
    QStringView title;
    QStringView location;
    int daysFromNow;
    int startMinute; ///< of the day, in UTC
    int durationMinutes;
};
constexpr std::array kEvents{
    Event{u"Dentist", u"Harbour Street 4", 9, 8 * 60 + 30, 45},
    Event{u"D\u00EEner avec No\u00EBl", u"Chez Mina", -20, 18 * 60, 150},
};

bool insertCalendar(DRDatabase& database)
{
    return database.executeUpdate(
        u"INSERT INTO Calendars (_id, account_name, account_type, name, calendar_displayName, calendar_color, "
        "calendar_access_level, visible, sync_events, calendar_timezone, ownerAccount, canOrganizerRespond) VALUES "
        "(1, 'Phone', 'LOCAL', 'My calendar', 'My calendar', -10833451, 700, 1, 1, 'UTC', 'Phone', 1)"_s);
}

bool insertEvent(DRDatabase& database, const Event& event, const QDateTime& moment)
{
    const qint64 day = moment.addDays(event.daysFromNow).toMSecsSinceEpoch() / kMillisecondsPerDay;
    const qint64 begin = day * kMillisecondsPerDay + event.startMinute * kMillisecondsPerMinute;
    const qint64 end = begin + event.durationMinutes * kMillisecondsPerMinute;
    if (!database.executeUpdate(
            u"INSERT INTO Events (dirty, calendar_id, title, eventLocation, selfAttendeeStatus, dtstart, dtend, "
            u"eventTimezone, "
            "hasAlarm, lastDate, hasAttendeeData, organizer) VALUES (1, 1, ?1, ?2, 1, ?3, ?4, 'UTC', 1, ?4, 1, 'Phone')"_s,
            {event.title.toString(), event.location.toString(), begin, end})) {
        return false;
    }
    const qint64 eventId = database.lastInsertRowId();
    const qint64 julianDay = day + kJulianDayOf1970;
    const qint64 startMinute = event.startMinute;
    return database.executeUpdate(
               u"INSERT INTO Instances (event_id, begin, end, startDay, endDay, startMinute, endMinute) "
               "VALUES (?, ?, ?, ?, ?, ?, ?)"_s,
               {eventId, begin, end, julianDay, julianDay, startMinute, startMinute + event.durationMinutes}) &&
           database.executeUpdate(u"INSERT INTO Reminders (event_id, minutes, method) VALUES (?, 15, 1)"_s,
                                  {eventId}) &&
           database.executeUpdate(
               u"INSERT INTO Attendees (event_id, attendeeEmail, attendeeStatus, attendeeRelationship, attendeeType) "
               "VALUES (?, 'Phone', 1, 2, 1)"_s,
               {eventId});
}

bool insertRows(DRDatabase& database, const QDateTime& moment)
{
    return insertCalendar(database) &&
           std::all_of(kEvents.begin(), kEvents.end(),
                       [&database, &moment](const Event& event) { return insertEvent(database, event, moment); });
}

} // namespace

bool addPhoneCalendar(DRSamplePhone& phone, const DRSampleSettings& settings)
{
    const DRSampleApp app{.packetId = u"com.android.providers.calendar"_s, .versionCode = 19};
    return phone.addPacket(app, [&settings](const QString& appFolder) {
        return QDir().mkpath(appFolder + u"/db"_s) &&
               writeSampleDatabase(appFolder + u"/db/calendar.db"_s, {u"phone_calendar"_s}, DRSampleJournal::Rollback,
                                   [&settings](DRDatabase& database) { return insertRows(database, settings.moment); });
    });
}
