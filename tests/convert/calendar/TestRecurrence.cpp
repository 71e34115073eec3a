#include "convert/calendar/DRRecurrence.h"
#include "platform/core/DRLocalCalendar.h"
#include "tests/support/DRTestTable.h"
#include "tests/support/DRTestTimeZone.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHour = 3'600'000;
constexpr qint32 kMost = std::numeric_limits<qint32>::max();

QDateTime moment(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

QDateTime utc(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text) + u'Z', Qt::ISODate);
}

/// An hour long.
DRImportedEvent recurring(const QDateTime& start, qint32 frequency, qint32 interval, qint32 weekStart = 0)
{
    return {.startDate = start,
            .endDate = start.addMSecs(kHour),
            .hasRecurrence = true,
            .recurrenceFrequency = frequency,
            .recurrenceInterval = interval,
            .weekStart = weekStart};
}

std::vector<DRCalendarInstance> instancesIn(const QString& zone, const DRImportedEvent& event)
{
    const DRTestTimeZone chosen(zone);
    return DRRecurrence::furtherInstances(event, DRLocalCalendar());
}

/// One case for expand_rules.py.
struct Case {
    QString zone;
    DRImportedEvent event;
    QString frequency;
    int count = 0;
};

QJsonObject jsonOf(const Case& one)
{
    return {{u"zone"_s, one.zone},
            {u"start"_s, one.event.startDate.toSecsSinceEpoch()},
            {u"frequency"_s, one.frequency},
            {u"interval"_s, one.event.recurrenceInterval},
            {u"count"_s, one.count}};
}

/// Every frequency with several intervals and starts over the years, at times of day that no clock change touches.
std::vector<Case> casesFor(const QString& zone, const DRLocalCalendar& calendar)
{
    const QStringList words{u"DAILY"_s, u"WEEKLY"_s, u"MONTHLY"_s, u"YEARLY"_s};
    std::vector<Case> cases;
    for (qint32 frequency = 1; frequency <= 4; ++frequency) {
        for (const qint32 interval : {1, 2, 5}) {
            for (const char* day : {"1984-12-05", "2010-03-01", "2011-12-28", "2014-06-15"}) {
                // Noon in the zone, for no clock changes then.
                const QDateTime noon(QDate::fromString(QString::fromLatin1(day), Qt::ISODate), QTime(12, 0),
                                     QTimeZone(zone.toLatin1()));
                Case one{.zone = zone,
                         .event = recurring(noon.toUTC(), frequency, interval),
                         .frequency = words.at(frequency - 1)};
                // Beyond 2037 dateutil has no summer time.
                one.event.recurrenceEndDate = utc("2037-01-01T00:00:00");
                one.count = 1 + static_cast<int>(DRRecurrence::furtherInstances(one.event, calendar).size());
                cases.push_back(one);
            }
        }
    }
    return cases;
}

QJsonArray expand(const std::vector<Case>& cases)
{
    QJsonArray input;
    for (const Case& one : cases) {
        input.append(jsonOf(one));
    }
    QProcess python;
    python.start(QStringLiteral(PYTHON), {QStringLiteral(EXPAND_RULES)});
    python.write(QJsonDocument(input).toJson());
    python.closeWriteChannel();
    python.waitForFinished();
    qInfo("%s", python.readAllStandardError().constData());
    return QJsonDocument::fromJson(python.readAllStandardOutput()).array();
}

} // namespace

class TestRecurrence : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void agreesWithDateutil_data()
    {
        const DRTestTable<QString> row("zone");
        for (const char* zone :
             {"UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "Pacific/Apia",
              "America/Sao_Paulo", "America/Mexico_City", "Africa/Cairo", "America/Nuuk"}) {
            row(zone, QString::fromLatin1(zone));
        }
    }

    void agreesWithDateutil()
    {
        QFETCH(QString, zone);
        const DRTestTimeZone chosen(zone);
        const DRLocalCalendar calendar;
        std::vector<Case> cases = casesFor(zone, calendar);
        if (zone == u"Pacific/Apia") { // the day that it skipped, 30 December 2011, is pinned elsewhere
            std::erase_if(cases, [](const Case& one) { return one.event.startDate < utc("2012-01-01T00:00:00"); });
        }
        const QJsonArray expanded = expand(cases);
        QCOMPARE(static_cast<std::size_t>(expanded.size()), cases.size());
        for (std::size_t i = 0; i < cases.size(); ++i) {
            QJsonArray own{cases[i].event.startDate.toSecsSinceEpoch()};
            for (const DRCalendarInstance& instance : DRRecurrence::furtherInstances(cases[i].event, calendar)) {
                own.append(*instance.begin / 1000);
            }
            QVERIFY(own.size() > 4);
            QVERIFY2(own == expanded.at(static_cast<qsizetype>(i)).toArray(),
                     QJsonDocument(jsonOf(cases[i])).toJson().constData());
        }
    }

    void rules_data()
    {
        const DRTestTable<DRImportedEvent, QString> row("event", "rule");

        const QDateTime tuesday = utc("2014-03-04T12:00:00");
        const QDateTime sunday = utc("2014-03-02T12:00:00");
        row("daily", recurring(tuesday, 1, 2, 1), u"FREQ=DAILY;INTERVAL=2;WKST=MO"_s);
        row("weekly, own names of days", recurring(tuesday, 2, 2, 7), u"FREQ=WEEKLY;INTERVAL=2;WKST=SU;BYDAY=TU"_s);
        row("no week start turns Sunday into Monday", recurring(sunday, 2, 1, 0),
            u"FREQ=WEEKLY;INTERVAL=1;WKST=SU;BYDAY=MO"_s);
        row("a week start of 3 turns Tuesday into Friday", recurring(tuesday, 2, 1, 3),
            u"FREQ=WEEKLY;INTERVAL=1;WKST=WE;BYDAY=FR"_s);
        row("8 is no week start", recurring(tuesday, 2, 1, 8), u"FREQ=WEEKLY;INTERVAL=1;WKST=SU;BYDAY=WE"_s);
        row("monthly, in the zone already the 1st", recurring(utc("2014-01-31T20:00:00"), 3, 1),
            u"FREQ=MONTHLY;INTERVAL=1;WKST=SU;BYMONTHDAY=1"_s);
        row("weekly, in the zone already Wednesday", recurring(utc("2014-03-04T20:00:00"), 2, 1, 7),
            u"FREQ=WEEKLY;INTERVAL=1;WKST=SU;BYDAY=WE"_s);
        row("any other is yearly", recurring(tuesday, 0, 1), u"FREQ=YEARLY;INTERVAL=1;WKST=SU"_s);
        row("negative", recurring(tuesday, -3, -2, -1), u"FREQ=YEARLY;INTERVAL=-2;WKST=SU"_s);
    }

    void rules()
    {
        QFETCH(DRImportedEvent, event);
        const DRTestTimeZone chosen(u"Asia/Kathmandu"_s);
        QTEST(DRRecurrence::rule(event, DRLocalCalendar()), "rule");
    }

    void instances_data()
    {
        const DRTestTable<DRImportedEvent, std::size_t, QDateTime> row("event", "count", "last");

        const QDateTime start = utc("2014-01-31T10:00:00");
        const QDateTime none;
        const auto until = [](DRImportedEvent event, const QDateTime& end) {
            event.recurrenceEndDate = end;
            return event;
        };
        row("at most 100", recurring(start, 2, 2), 100, start.addDays(1400));
        row("the 31st becomes the 28th for good", recurring(start, 3, 1), 100, utc("2022-05-28T10:00:00"));
        row("29 February stays at the 28th", recurring(utc("2012-02-29T10:00:00"), 4, 1), 100,
            utc("2112-02-28T10:00:00"));
        row("the end counts", until(recurring(start, 1, 1), start.addDays(3)), 3, start.addDays(3));
        row("just past the end", until(recurring(start, 1, 1), start.addDays(3).addMSecs(-1)), 2, start.addDays(2));
        row("end before the start", until(recurring(start, 1, 1), start.addDays(-1)), 0, none);
        row("the farthest is 100 years away", recurring(start, 4, 25), 4, utc("2114-01-31T10:00:00"));
        row("interval 0", recurring(start, 2, 0), 100, start);
        row("negative interval", recurring(start, 1, -1), 100, start.addDays(-100));
        row("largest interval", recurring(start, 4, kMost), 0, none);
        row("smallest interval", recurring(start, 3, -kMost - 1), 0, none);
        row("latest start", recurring(moment(std::numeric_limits<qint64>::max()), 1, 1), 0, none);
        row("earliest start", recurring(moment(std::numeric_limits<qint64>::min()), 1, 1), 0, none);
        row("no start", recurring({}, 1, 1), 0, none);
    }

    void instances()
    {
        QFETCH(DRImportedEvent, event);
        QFETCH(std::size_t, count);
        QFETCH(QDateTime, last);
        const auto instances = instancesIn(u"Europe/Berlin"_s, event);
        QCOMPARE(instances.size(), count);
        if (count > 0) {
            // Over a century the zone's summer time may begin or end in between.
            QVERIFY(qAbs(*instances.back().begin - last.toMSecsSinceEpoch()) <= kHour);
            QCOMPARE(*instances.back().end - *instances.back().begin, kHour);
        }
    }

    void timesInAGapStayShifted()
    {
        DRImportedEvent event = recurring(utc("2014-03-29T01:30:00"), 1, 1); // 02:30 in Berlin
        const auto instances = instancesIn(u"Europe/Berlin"_s, event);
        QCOMPARE(moment(*instances.at(0).begin), utc("2014-03-30T01:30:00")); // 03:30
        QCOMPARE(moment(*instances.at(1).begin), utc("2014-03-31T01:30:00")); // 03:30 still
    }

    void columns_data()
    {
        const DRTestTable<qint64, qint64, qint64> row("milliseconds", "day", "minute");

        row("1970", 0, 2440588, 0);
        row("a second before the day's end", 86'399'000, qint64{2440588 + 1}, 1439);
        row("two minutes before it", 86'280'000, 2440588, 1438);
        row("just before 1970", -999, 2440588, 0);
        row("a second before 1970", -1000, 2440588, 1439);
        row("a day before 1970", -86'400'000, 2440587, 0);
        row("latest", std::numeric_limits<qint64>::max(), 106754431755, 432);
    }

    void columns()
    {
        QFETCH(qint64, milliseconds);
        const auto first = DRCalendarInstance::first({.begin = milliseconds, .end = milliseconds}, false);
        QTEST(first.startDay, "day");
        QTEST(first.startMinute, "minute");
        QCOMPARE(first.endDay, first.startDay);
        QCOMPARE(first.endMinute, first.startMinute);
    }

    void spans_data()
    {
        const DRTestTable<QDateTime, qint64, qint64> row("end", "milliseconds", "duration");

        row("no end", {}, 1000, 1);
        row("end before the start", moment(999), 1000, 1);
        row("less than a second", moment(1999), 1999, 1);
        row("cut to seconds", moment(3999), 3999, 2);
        const qint64 latest = std::numeric_limits<qint64>::max();
        row("endless", moment(latest), latest, (latest - 1000) / 1000);
    }

    void spans()
    {
        QFETCH(QDateTime, end);
        const auto span = DREventSpan::of({.startDate = moment(1000), .endDate = end});
        QCOMPARE(span.begin, std::optional<qint64>(1000));
        QTEST(*span.end, "milliseconds");
        QTEST(DRRecurrence::durationSeconds(span), "duration");
    }

    void endlessEventsDoNotOverflow()
    {
        DRImportedEvent event = recurring(utc("2014-01-01T00:00:00"), 1, 1);
        event.endDate = moment(std::numeric_limits<qint64>::max());
        const auto instances = instancesIn(u"UTC"_s, event);
        QCOMPARE(instances.size(), std::size_t{100});
        QCOMPARE(*instances.back().end, std::numeric_limits<qint64>::max());
        event.startDate = moment(std::numeric_limits<qint64>::min());
        QCOMPARE(DRRecurrence::durationSeconds(DREventSpan::of(event)), std::numeric_limits<qint64>::max() / 1000);
    }
};

QTEST_GUILESS_MAIN(TestRecurrence)
#include "TestRecurrence.moc"
