#include "platform/core/DREventLoopTimerSource.h"

#include <QTimer>

#include <utility>

namespace {

enum class Repeats { Never, Always };

class EventLoopTimer final : public DRTimer {
public:
    EventLoopTimer(std::chrono::milliseconds interval, Repeats repeats, std::function<void()> action)
    {
        m_timer.setSingleShot(repeats == Repeats::Never);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(action));
        m_timer.start(interval);
    }

private:
    QTimer m_timer;
};

} // namespace

std::unique_ptr<DRTimer> DREventLoopTimerSource::repeatEvery(std::chrono::milliseconds interval,
                                                             std::function<void()> action)
{
    return std::make_unique<EventLoopTimer>(interval, Repeats::Always, std::move(action));
}

std::unique_ptr<DRTimer> DREventLoopTimerSource::runAfter(std::chrono::milliseconds delay, std::function<void()> action)
{
    return std::make_unique<EventLoopTimer>(delay, Repeats::Never, std::move(action));
}
