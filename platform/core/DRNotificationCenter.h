#pragma once

#include <any>
#include <functional>
#include <memory>

#include <QString>
#include <QVariantMap>

/// One posted event: its name, what it is about, and further values.
struct DRNotification {
    QString name;
    std::any object;      ///< what the event is about, such as a `std::shared_ptr<DRDCDeviceTask>`; may be empty
    QVariantMap userInfo; ///< further values under the keys that the event's documentation names
};

/// Hands named events from those who post them to those who observe them. Main thread only.
class DRNotificationCenter {
public:
    using Handler = std::function<void(const DRNotification&)>;

    /// Keeps a handler registered; destroying it ends the observation, also while an event is being delivered.
    class Registration {
    public:
        virtual ~Registration() = default;
    };

    DRNotificationCenter();
    ~DRNotificationCenter();
    DRNotificationCenter(const DRNotificationCenter&) = delete;
    DRNotificationCenter& operator=(const DRNotificationCenter&) = delete;

    /// Calls `handler` for every event of that name, from any sender, in the order of registration.
    [[nodiscard]] std::unique_ptr<Registration> observe(const QString& name, Handler handler);

    /// Delivers the event to its observers before it returns.
    void post(const DRNotification& notification);

private:
    struct State;
    std::shared_ptr<State> m_state;
};
