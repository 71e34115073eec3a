#pragma once

#include "convert/calendar/DRImportedEvent.h"

#include <QHash>
#include <QString>

#include <optional>
#include <vector>

class DRDatabase;

/// What the iPhone keeps of its events in further tables: places, recurrences, alarms, participants. Each table is read once,
/// so that a database without indexes is not searched for every event.
class DREventDetails {
public:
    /// Reads `Location`, `Recurrence`, `Alarm`, `Participant` and `Identity`. A table or column that the database lacks
    /// counts as no rows: systems differ.
    [[nodiscard]] static DREventDetails read(DRDatabase& database);

    /// Adds what belongs to the event with this ROWID. `startSeconds`: its start in seconds since 2001-01-01 UTC, to which
    /// alarms may be relative.
    void addTo(DRImportedEvent& event, qint64 eventId, double startSeconds) const;

    /// False when a table could not be read to its end.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

    /// Alarms of a layout that does not say to which events they belong.
    [[nodiscard]] qint64 unownedAlarmCount() const { return m_unownedAlarmCount; }

private:
    struct Recurrence {
        qint32 frequency = 0;
        qint32 interval = 0;
        qint32 weekStart = 0;
        QDateTime endDate; ///< invalid when it goes on for ever
    };
    struct Alarm {
        std::optional<double> date; ///< seconds since 2001; none when relative
        qint64 secondsAfterStart = 0;
    };
    struct Participant {
        qint64 status = 0;
        QString email; ///< may be null
        bool isSelf = false;
    };
    using Recurrences = QHash<qint64, Recurrence>;

    void readLocations(DRDatabase& database);
    [[nodiscard]] Recurrences readRecurrences(DRDatabase& database, const char* owner);
    void readAlarms(DRDatabase& database);
    void readParticipants(DRDatabase& database);
    void readIdentities(DRDatabase& database);

    void addRecurrence(DRImportedEvent& event, qint64 eventId) const;
    void addAlarms(DRImportedEvent& event, qint64 eventId, double startSeconds) const;
    void addParticipants(DRImportedEvent& event, qint64 eventId) const;
    [[nodiscard]] QString nameOf(const QString& email) const;

    QHash<qint64, DRImportedLocation> m_locations;
    Recurrences m_recurrencesByOwner;
    Recurrences m_recurrencesByEvent; ///< the older layout's
    QHash<qint64, std::vector<Alarm>> m_alarms;
    QHash<qint64, std::vector<Participant>> m_participants;
    QHash<QString, QString> m_namesByAddress; ///< of the first identity with the address; null when it has no name
    qint64 m_unownedAlarmCount = 0;
    bool m_isComplete = true;
};
