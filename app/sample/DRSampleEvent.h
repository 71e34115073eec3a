#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// How often a made-up event recurs, in the iPhone's codes. Ends in seconds since 2001-01-01 UTC.
struct DRSampleRecurrence {
    qint64 frequency = 0; ///< 1 daily, 2 weekly, 3 monthly, 4 yearly
    qint64 interval = 1;
    qint64 weekStart = 0;
    std::optional<double> end = {};
    std::optional<double> cachedEnd = {};
};

/// A made-up alarm: either counted from the event's start or at a moment of its own.
struct DRSampleAlarm {
    std::optional<qint64> secondsAfterStart = {}; ///< negative before it
    std::optional<double> moment = {};            ///< seconds since 2001-01-01 UTC
};

/// A made-up person who is invited to an event. Null texts are absent.
struct DRSampleGuest {
    QString email;
    QString firstName;
    QString lastName;
    QString displayName;
    qint64 status = 0; ///< the iPhone's code
    bool isSelf = false;
    bool hasIdentity = true; ///< whether the calendar store knows names for the address
};

/// A made-up event as an iPhone's calendar store keeps it. Null texts are absent; times in seconds since 2001-01-01 UTC.
struct DRSampleEvent {
    QString calendar; ///< its title
    QString title;
    QString notes;
    QString url;
    QString zone; ///< such as "Europe/Berlin"; "_float" for a day that is the same everywhere
    double start = 0;
    double end = 0;
    bool isAllDay = false;
    bool isDueAllDay = false;
    QStringList locations;
    std::vector<DRSampleRecurrence> recurrences;
    std::vector<DRSampleAlarm> alarms;
    std::vector<DRSampleGuest> guests;
};
