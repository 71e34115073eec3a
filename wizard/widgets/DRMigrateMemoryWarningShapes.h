#pragma once

#include <QRectF>

#include <vector>

/// The shapes that the storage bar is made of: rectangles with one corner radius, in points.
struct DRMigrateMemoryWarningShapes {
    QRectF outline; ///< the whole bar
    QRectF hilite;  ///< peeps out above the body
    QRectF shadow;  ///< peeps out below it
    QRectF body;
    qreal cornerRadius = 0; ///< of all of them, in both directions

    /// Of a bar that fills `bounds`.
    [[nodiscard]] static DRMigrateMemoryWarningShapes forBounds(const QRectF& bounds);

    bool operator==(const DRMigrateMemoryWarningShapes&) const = default;
};

/// The places of the bar's parts, one for each value: side by side from the left edge, each as much of the width as its
/// value is of `total`, at full height. What is free remains at the right. Values that exceed the total lead beyond the
/// bounds. `total` is not 0.
[[nodiscard]] std::vector<QRectF>
memoryWarningRects(const std::vector<quint64>& values, quint64 total, const QRectF& bounds);
