#include "wizard/widgets/DRMigrateTransmisionAnimation.h"

#include "platform/core/DRTimerSource.h"
#include "platform/ui/DRAccessibleRole.h"

#include <QPainter>
#include <QStyle>

using namespace std::chrono_literals;

namespace {

constexpr auto kInterval = 100ms;

} // namespace

DRMigrateTransmisionAnimation::DRMigrateTransmisionAnimation(DRTimerSource& timers, QWidget* parent)
    : QWidget(parent), m_timers(timers)
{
    DRAccessibleRole::give(*this, QAccessible::Animation);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

DRMigrateTransmisionAnimation::~DRMigrateTransmisionAnimation() = default;

double DRMigrateTransmisionAnimation::offsetBehind(double offset, double imageWidth)
{
    const double next = offset + kFrameWidth;
    return next + kFrameWidth > imageWidth ? 0 : next;
}

bool DRMigrateTransmisionAnimation::setImage(const QString& path)
{
    const bool isLoaded = m_image.load(path);
    m_offset = 0;
    updateGeometry();
    update();
    return isLoaded;
}

void DRMigrateTransmisionAnimation::startAnimating()
{
    stopAnimating();
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0) {
        m_animationTimer = m_timers.repeatEvery(kInterval, [this] { animate(); });
    }
}

void DRMigrateTransmisionAnimation::stopAnimating()
{
    m_animationTimer.reset();
}

void DRMigrateTransmisionAnimation::animate()
{
    m_offset = offsetBehind(m_offset, m_image.defaultSize().width());
    update();
}

QSize DRMigrateTransmisionAnimation::sizeHint() const
{
    return {static_cast<int>(kFrameWidth), m_image.defaultSize().height()};
}

void DRMigrateTransmisionAnimation::paintEvent(QPaintEvent* /*event*/)
{
    if (!m_image.isValid()) {
        return;
    }
    QPainter painter(this);
    painter.setClipRect(rect());
    if (isRightToLeft()) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    const double scale = width() / kFrameWidth;
    m_image.render(&painter, QRectF(-m_offset * scale, 0, m_image.defaultSize().width() * scale, height()));
}
