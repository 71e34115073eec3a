#include "wizard/widgets/DRMigrateMemoryWarningShapes.h"

namespace {

constexpr qreal kRadiusOfHeight = 0.4;

} // namespace

DRMigrateMemoryWarningShapes DRMigrateMemoryWarningShapes::forBounds(const QRectF& bounds)
{
    const QRectF inset = bounds.adjusted(1, 2, -1, -2);
    return {.outline = bounds,
            .hilite = inset.translated(0, -1),
            .shadow = inset.translated(0, 1),
            .body = bounds.adjusted(2, 2, -2, -2),
            .cornerRadius = kRadiusOfHeight * bounds.height()};
}

std::vector<QRectF> memoryWarningRects(const std::vector<quint64>& values, quint64 total, const QRectF& bounds)
{
    std::vector<QRectF> rects;
    rects.reserve(values.size());
    qreal start = 0;
    for (const quint64 value : values) {
        const qreal fraction = static_cast<qreal>(value) / static_cast<qreal>(total);
        rects.emplace_back(bounds.left() + start * bounds.width(), bounds.top(), fraction * bounds.width(),
                           bounds.height());
        start += fraction;
    }
    return rects;
}
