#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>

/// Keeps the computer from falling asleep while it is asked to, where the system offers that; elsewhere it does nothing.
/// The system lets go by itself when the program ends, however it ends.
class DRSleepInhibitor : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Both texts are for people: who keeps it awake, and why. Does nothing while that is asked already.
    void inhibit(const QString& who, const QString& why);

    void release();

private:
    bool m_isWanted = false;
    QDBusUnixFileDescriptor m_lock; ///< the system keeps awake while this is open
};
