#include "platform/ui/DRSpinner.h"

#include "platform/core/DRTimerSource.h"
#include "platform/ui/DRAccessibleRole.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

// The painter counts angles in sixteenths of a degree, counter-clockwise.
constexpr int kFullCircle = 360 * 16;
constexpr int kArc = 270 * 16;
constexpr double kPenShare = 0.11; ///< of the side
constexpr int kTrackAlpha = 60;

bool isAnimated(const QWidget& widget)
{
    return widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

} // namespace

DRSpinner::DRSpinner(DRTimerSource& timers, QWidget* parent) : QWidget(parent), m_timers(timers)
{
    DRAccessibleRole::give(*this, QAccessible::Animation);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

DRSpinner::~DRSpinner() = default;

QSize DRSpinner::sizeHint() const
{
    const int side = std::max(fontMetrics().height(), 16);
    return {side, side};
}

void DRSpinner::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    startOrStop();
}

void DRSpinner::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    startOrStop();
}

void DRSpinner::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        startOrStop();
    }
}

void DRSpinner::startOrStop()
{
    if (!isVisible() || !isAnimated(*this)) {
        m_timer.reset();
        return;
    }
    if (!m_timer) {
        m_timer = m_timers.repeatEvery(kStepInterval, [this] { turn(); });
    }
}

void DRSpinner::turn()
{
    m_step = (m_step + 1) % kStepsPerTurn;
    update();
}

void DRSpinner::paintEvent(QPaintEvent*)
{
    const double side = std::min(width(), height());
    const double pen = side * kPenShare;
    QRectF ring(0, 0, side - pen, side - pen);
    ring.moveCenter(QRectF(rect()).center());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = palette().color(QPalette::Link);
    const int start = kFullCircle / 4 - m_step * kFullCircle / kStepsPerTurn;
    painter.setPen(QPen(color, pen, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, start, -kArc);
    color.setAlpha(kTrackAlpha);
    painter.setPen(QPen(color, pen));
    painter.drawArc(ring, 0, kFullCircle);
}
