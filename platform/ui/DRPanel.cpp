#include "platform/ui/DRPanel.h"

#include <QPainter>

namespace {

constexpr qreal kCornerRadius = 8; // in points

} // namespace

void DRPanel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().base());
    painter.drawRoundedRect(rect(), kCornerRadius, kCornerRadius);
}
