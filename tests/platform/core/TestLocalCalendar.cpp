#include "platform/core/DRLocalCalendar.h"
#include "tests/support/DRTestTable.h"
#include "tests/support/DRTestTimeZone.h"

#include <QDateTime>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

qint64 at(const char* utc)
{
    return QDateTime::fromString(QString::fromLatin1(utc) + u'Z', Qt::ISODate).toMSecsSinceEpoch();
}

QString text(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(u"yyyy-MM-ddTHH:mm:ss");
}

using Unit = DRLocalCalendar::Unit;

constexpr qint64 kLatest = std::numeric_limits<qint64>::max();
constexpr qint64 kEarliest = std::numeric_limits<qint64>::min();
constexpr qint32 kMost = std::numeric_limits<qint32>::max();

} // namespace

class TestLocalCalendar : public QObject {
    Q_OBJECT

private Q_SLOTS:

    /// Each step from the moment before it; moments in UTC.
    void stepsKeepTheTimeOfDay_data()
    {
        const DRTestTable<QString, Unit, int, QByteArrayList> row("zone", "unit", "count", "moments");

        row("month, from the 31st on it stays at the 28th", u"UTC"_s, Unit::Month, 1,
            {"2014-01-31T10:00:00", "2014-02-28T10:00:00", "2014-03-28T10:00:00"});
        row("29 February becomes 28 and stays so", u"UTC"_s, Unit::Year, 4,
            {"1896-02-29T10:00:00", "1900-02-28T10:00:00", "1904-02-28T10:00:00"});
        row("over the spring change", u"Europe/Berlin"_s, Unit::Day, 1, {"2014-03-29T08:00:00", "2014-03-30T07:00:00"});
        row("02:30 does not exist on that day and the shift stays", u"Europe/Berlin"_s, Unit::Day, 1,
            {"2014-03-29T01:30:00", "2014-03-30T01:30:00", "2014-03-31T01:30:00"});
        row("the same by weeks", u"America/New_York"_s, Unit::Week, 2,
            {"2014-02-23T07:30:00", "2014-03-09T07:30:00", "2014-03-23T07:30:00"});
        row("a day that the island skipped", u"Pacific/Apia"_s, Unit::Day, 1,
            {"2011-12-29T20:00:00", "2011-12-30T20:00:00", "2011-12-31T20:00:00"});
        row("half an hour of summer time", u"Australia/Lord_Howe"_s, Unit::Month, -1,
            {"2014-04-19T22:00:00", "2014-03-19T21:30:00"});
        row("the offset before 1986", u"Asia/Kathmandu"_s, Unit::Week, 1,
            {"1985-12-30T00:30:00", "1986-01-06T00:15:00"});
        row("no gap in 1582", u"UTC"_s, Unit::Day, 1, {"1582-10-04T00:00:00", "1582-10-05T00:00:00"});
        row("a step of 0", u"UTC"_s, Unit::Week, 0, {"2014-01-01T00:00:00", "2014-01-01T00:00:00"});
        row("backward across the year 1", u"UTC"_s, Unit::Year, -2000, {"2014-05-05T00:00:00", "0014-05-05T00:00:00"});
    }

    void stepsKeepTheTimeOfDay()
    {
        QFETCH(QString, zone);
        QFETCH(Unit, unit);
        QFETCH(int, count);
        QFETCH(QByteArrayList, moments);
        const DRTestTimeZone chosen(zone);
        const DRLocalCalendar calendar;
        for (qsizetype i = 1; i < moments.size(); ++i) {
            const auto next = calendar.adding(at(moments.at(i - 1).constData()), count, unit);
            QVERIFY(next);
            QCOMPARE(text(*next), QString::fromLatin1(moments.at(i)));
        }
    }

    void daysAreThoseOfTheZone_data()
    {
        // moment: in UTC; 1 June 2014 is a Sunday
        const DRTestTable<QString, QString, int, int> row("zone", "moment", "dayOfMonth", "dayOfWeek");
        row("the same day", u"America/New_York"_s, u"2014-06-01T11:00:00"_s, 1, 0);
        row("still the day before", u"America/New_York"_s, u"2014-06-01T03:00:00"_s, 31, 6);
        row("already the next day", u"Pacific/Apia"_s, u"2014-06-01T11:00:00"_s, 2, 1);
        row("before the known years", u"Asia/Kathmandu"_s, u"1803-06-01T20:00:00"_s, 2, 4);
        row("after them, in summer", u"Europe/Berlin"_s, u"2403-06-30T22:30:00"_s, 1, 2);
        row("by a rule, until midnight", u"<+0330>-3:30"_s, u"2014-03-15T20:29:59"_s, 15, 6);
        row("by a rule, from midnight on", u"<+0330>-3:30"_s, u"2014-03-15T20:30:00"_s, 16, 0);
    }

    void daysAreThoseOfTheZone()
    {
        QFETCH(QString, zone);
        QFETCH(QString, moment);
        const DRTestTimeZone chosen(zone);
        const DRLocalCalendar calendar;
        QTEST(calendar.dayOfMonth(at(moment.toLatin1().constData())), "dayOfMonth");
        QTEST(calendar.dayOfWeek(at(moment.toLatin1().constData())), "dayOfWeek");
    }

    void whatIsOutOfRangeIsNotComputed()
    {
        const DRTestTimeZone chosen(u"Europe/Berlin"_s);
        const DRLocalCalendar calendar;
        for (const qint64 moment : {kLatest, kEarliest, kLatest / 2}) {
            for (const Unit unit : {Unit::Day, Unit::Week, Unit::Month, Unit::Year}) {
                QVERIFY(!calendar.adding(moment, 1, unit));
            }
            QVERIFY(calendar.dayOfMonth(moment) >= 1 && calendar.dayOfMonth(moment) <= 31);
            QVERIFY(calendar.dayOfWeek(moment) >= 0 && calendar.dayOfWeek(moment) <= 6);
        }
        for (const Unit unit : {Unit::Week, Unit::Month, Unit::Year}) {
            QVERIFY(!calendar.adding(0, kMost, unit));
            QVERIFY(!calendar.adding(0, -kMost - 1, unit));
        }
    }

    void zoneOfTheComputer_data()
    {
        const DRTestTable<QString, QString> row("zone", "noon"); // noon: of a summer's day in UTC, one month later

        row("by name", u"Europe/Berlin"_s, u"2014-04-15T11:00:00"_s);
        row("with a colon", u":Europe/Berlin"_s, u"2014-04-15T11:00:00"_s);
        row("by its file", u":/usr/share/zoneinfo/Europe/Berlin"_s, u"2014-04-15T11:00:00"_s);
        row("nothing is UTC", u""_s, u"2014-04-15T12:00:00"_s);
        row("a rule", u"CET-1CEST,M3.5.0,M10.5.0/3"_s, u"2014-04-15T11:00:00"_s);
        row("nonsense is UTC", u"Nowhere/Land"_s, u"2014-04-15T12:00:00"_s);
    }

    void zoneOfTheComputer()
    {
        QFETCH(QString, zone);
        const DRTestTimeZone chosen(zone);
        const auto later = DRLocalCalendar().adding(at("2014-03-15T12:00:00"), 1, Unit::Month);
        QVERIFY(later);
        QTEST(text(*later), "noon");
    }
};

QTEST_GUILESS_MAIN(TestLocalCalendar)
#include "TestLocalCalendar.moc"
