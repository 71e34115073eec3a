#include "app/gui/DRSleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

void DRSleepInhibitor::inhibit(const QString& who, const QString& why)
{
    if (m_isWanted) {
        return;
    }
    m_isWanted = true;
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                                       u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
    call.setArguments({u"sleep:idle"_s, who, why, u"block"_s});
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        if (m_isWanted && reply.isValid()) {
            m_lock = reply.value();
        }
        watcher->deleteLater();
    });
}

void DRSleepInhibitor::release()
{
    m_isWanted = false;
    m_lock = QDBusUnixFileDescriptor();
}
