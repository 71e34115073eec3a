#pragma once

#include <QPainterPath>
#include <QRectF>

/// The line of a tick within a square, for a pen with round ends.
[[nodiscard]] inline QPainterPath tickWithin(const QRectF& square)
{
    const auto at = [&square](double x, double y) {
        return QPointF(square.left() + x * square.width(), square.top() + y * square.height());
    };
    QPainterPath tick(at(0.28, 0.52));
    tick.lineTo(at(0.44, 0.67));
    tick.lineTo(at(0.73, 0.36));
    return tick;
}
