#include "app/sample/DRSampleEventTexts.h"

#include "app/sample/DRSampleResources.h"
#include "platform/core/DRDates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double kSecondsPerMinute = 60;
constexpr int kDaysBefore = 300; ///< the backup's moment, for the earliest appointment
constexpr int kDaysAfter = 120;
constexpr int kFirstHour = 7;
constexpr int kHours = 13;
constexpr qint64 kWeekly = 2;
constexpr qint64 kYearly = 4;
constexpr double kWeekSeconds = 7 * 86'400;

bool oneIn(int count, DRSampleRandom& random)
{
    return random.below(count) == 0;
}

/// A date text or a bare number of seconds since 2001; none for anything else.
std::optional<double> momentFrom(const QJsonValue& value)
{
    if (value.isDouble()) {
        return value.toDouble();
    }
    if (!value.isString()) {
        return {};
    }
    return DRDates::toReferenceSeconds(QDateTime::fromString(value.toString(), Qt::ISODateWithMs));
}

/// Null for a member that is missing, unlike for one that is empty.
QString textFrom(const QJsonValue& value)
{
    return value.isString() ? value.toString(u""_s) : QString();
}

DRSampleRecurrence recurrenceFrom(const QJsonValue& value)
{
    return {.frequency = value[u"frequency"].toInteger(),
            .interval = value[u"interval"].toInteger(),
            .weekStart = value[u"weekStart"].toInteger(),
            .end = momentFrom(value[u"end"]),
            .cachedEnd = momentFrom(value[u"cachedEnd"])};
}

DRSampleAlarm alarmFrom(const QJsonValue& value)
{
    const QJsonValue after = value[u"after"];
    return {.secondsAfterStart = after.isDouble() ? std::optional(after.toInteger()) : std::nullopt,
            .moment = momentFrom(value[u"at"])};
}

DRSampleGuest guestFrom(const QJsonValue& value)
{
    return {.email = textFrom(value[u"email"]),
            .firstName = textFrom(value[u"first"]),
            .lastName = textFrom(value[u"last"]),
            .displayName = textFrom(value[u"display"]),
            .status = value[u"status"].toInteger(),
            .isSelf = value[u"isSelf"].toBool(),
            .hasIdentity = value[u"hasIdentity"].toBool(true)};
}

template <typename Record> std::vector<Record> listFrom(const QJsonValue& value, Record (*make)(const QJsonValue&))
{
    std::vector<Record> records;
    for (const QJsonValue element : value.toArray()) {
        records.push_back(make(element));
    }
    return records;
}

DRSampleEvent eventFrom(const QJsonValue& value)
{
    const double start = momentFrom(value[u"start"]).value_or(0);
    const double end = start + value[u"minutes"].toInt() * kSecondsPerMinute;
    return {.calendar = value[u"calendar"].toString(),
            .title = textFrom(value[u"title"]),
            .notes = textFrom(value[u"notes"]),
            .url = textFrom(value[u"url"]),
            .zone = textFrom(value[u"zone"]),
            .start = start,
            .end = momentFrom(value[u"end"]).value_or(end),
            .isAllDay = value[u"allDay"].toBool(),
            .isDueAllDay = value[u"dueAllDay"].toBool(),
            .locations = value[u"locations"].toVariant().toStringList(),
            .recurrences = listFrom(value[u"recurrences"], recurrenceFrom),
            .alarms = listFrom(value[u"alarms"], alarmFrom),
            .guests = listFrom(value[u"guests"], guestFrom)};
}

} // namespace

DRSampleEventTexts::DRSampleEventTexts(DRSampleSettings settings)
    : m_settings(std::move(settings)),
      m_texts(QJsonDocument::fromJson(sampleResource(u"texts/calendar.json"_s)).object())
{
}

std::vector<DRSampleEvent> DRSampleEventTexts::hardEvents() const
{
    return listFrom(m_texts[u"hard"], eventFrom);
}

DRSampleEvent DRSampleEventTexts::compose(int number, DRSampleRandom& random) const
{
    constexpr int kTurn = 10;
    switch (number % kTurn) {
    case 0:
        return birthday(random);
    case 1:
    case 2:
        return holiday(number / kTurn * 2 + number % kTurn - 1);
    default:
        return appointment(number % 2 == 0 ? u"work"_s : u"private"_s, random);
    }
}

DRSampleEvent DRSampleEventTexts::wholeDay(const QDate& day) const
{
    const double start = DRDates::toReferenceSeconds(QDateTime(day, QTime(0, 0), Qt::UTC));
    return {.zone = u"_float"_s, .start = start, .end = start + 86'399, .isAllDay = true};
}

/// The calendar that is subscribed to has each day of a year, then those of the next one, for five years.
DRSampleEvent DRSampleEventTexts::holiday(int number) const
{
    const QJsonArray days = m_texts[u"holidays"].toArray();
    const QJsonValue day = days[number % days.size()];
    const int year = m_settings.moment.date().year() - 1 + static_cast<int>(number / days.size()) % 5;
    DRSampleEvent event = wholeDay(QDate(year, day[u"month"].toInt(), day[u"day"].toInt()));
    event.calendar = u"Holidays"_s;
    event.title = day[u"title"].toString();
    return event;
}

DRSampleEvent DRSampleEventTexts::birthday(DRSampleRandom& random) const
{
    const int year = 1940 + random.below(70);
    DRSampleEvent event = wholeDay(QDate(year, 1 + random.below(12), 1 + random.below(28)));
    event.calendar = u"Birthdays"_s;
    event.title = text(u"people"_s, random) + u"\u2019s Birthday"_s;
    event.recurrences.push_back({.frequency = kYearly});
    event.alarms.push_back({.secondsAfterStart = 9 * 3600});
    return event;
}

DRSampleEvent DRSampleEventTexts::appointment(const QString& kind, DRSampleRandom& random) const
{
    const QDate day = m_settings.moment.date().addDays(random.below(kDaysBefore + kDaysAfter) - kDaysBefore);
    const QTime time(kFirstHour + random.below(kHours), 15 * random.below(4));
    const double start = DRDates::toReferenceSeconds(QDateTime(day, time, Qt::UTC));
    DRSampleEvent event{.calendar = kind == u"work" ? u"Work"_s : u"Home"_s,
                        .title = text(kind, random),
                        .zone = text(u"zones"_s, random),
                        .start = start,
                        .end = start + 15 * kSecondsPerMinute * (1 + random.below(8))};
    if (oneIn(3, random)) {
        event.locations += text(u"places"_s, random);
    }
    if (oneIn(5, random)) {
        event.notes = text(u"notes"_s, random);
    }
    if (oneIn(8, random)) {
        event.url = text(u"urls"_s, random);
    }
    if (oneIn(3, random)) {
        event.alarms.push_back({.secondsAfterStart = -900 * (1 + random.below(4))});
    }
    if (oneIn(8, random)) {
        event.recurrences.push_back({.frequency = kWeekly,
                                     .interval = 1 + random.below(2),
                                     .weekStart = 1 + random.below(7),
                                     .cachedEnd = start + kWeekSeconds * (5 + random.below(30))});
    }
    if (oneIn(6, random)) {
        addGuests(event, random);
    }
    return event;
}

void DRSampleEventTexts::addGuests(DRSampleEvent& event, DRSampleRandom& random) const
{
    event.guests.push_back({.email = u"me@example.com"_s, .status = 1, .isSelf = true, .hasIdentity = false});
    const auto known = listFrom(m_texts[u"guests"], guestFrom);
    for (int count = 1 + random.below(4); count > 0; --count) {
        event.guests.push_back(random.pick(known));
        event.guests.back().status = random.below(5);
    }
}

QString DRSampleEventTexts::text(const QString& list, DRSampleRandom& random) const
{
    const auto patterns = m_texts[list].toVariant().toStringList();
    QString text = random.pick(patterns);
    text.replace(u"{n}"_s, QString::number(2 + random.below(8)));
    if (text.contains(u"{person}")) {
        text.replace(u"{person}"_s, random.pick(m_texts[u"people"].toVariant().toStringList()));
    }
    return text;
}
