#include "platform/core/DRNotificationCenter.h"

#include <QHash>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

struct Observer {
    DRNotificationCenter::Handler handler;
    bool isObserving = true;
};

using Observers = std::vector<std::shared_ptr<Observer>>;

} // namespace

struct DRNotificationCenter::State {
    QHash<QString, Observers> observersByName;
};

namespace {

/// Ends its observation when it goes, whether or not the centre is still there.
template <typename State> class ObserverRegistration final : public DRNotificationCenter::Registration {
public:
    ObserverRegistration(std::weak_ptr<State> state, QString name, std::shared_ptr<Observer> observer)
        : m_state(std::move(state)), m_name(std::move(name)), m_observer(std::move(observer))
    {
    }
    ObserverRegistration(const ObserverRegistration&) = delete;
    ObserverRegistration& operator=(const ObserverRegistration&) = delete;

    ~ObserverRegistration() override
    {
        m_observer->isObserving = false;
        if (const auto state = m_state.lock()) {
            std::erase(state->observersByName[m_name], m_observer);
        }
    }

private:
    std::weak_ptr<State> m_state;
    QString m_name;
    std::shared_ptr<Observer> m_observer;
};

} // namespace

DRNotificationCenter::DRNotificationCenter() : m_state(std::make_shared<State>()) {}

DRNotificationCenter::~DRNotificationCenter() = default;

std::unique_ptr<DRNotificationCenter::Registration> DRNotificationCenter::observe(const QString& name, Handler handler)
{
    auto observer = std::make_shared<Observer>(Observer{.handler = std::move(handler)});
    m_state->observersByName[name].push_back(observer);
    return std::make_unique<ObserverRegistration<State>>(m_state, name, std::move(observer));
}

void DRNotificationCenter::post(const DRNotification& notification)
{
    // A copy: handlers register and unregister others, and themselves, while they are called.
    const Observers observers = m_state->observersByName.value(notification.name);
    for (const auto& observer : observers) {
        if (observer->isObserving) {
            observer->handler(notification);
        }
    }
}
