#pragma once

#include <QByteArray>
#include <QString>

#include <ctime>

/// Gives the process another time zone for as long as it lives: what the variable `TZ` may hold.
class DRTestTimeZone {
public:
    explicit DRTestTimeZone(const QString& zone) : m_before(qgetenv("TZ")) { choose(zone.toLatin1()); }
    ~DRTestTimeZone() { choose(m_before); }
    Q_DISABLE_COPY_MOVE(DRTestTimeZone)

private:
    static void choose(const QByteArray& zone)
    {
        qputenv("TZ", zone);
        ::tzset();
    }

    QByteArray m_before;
};
