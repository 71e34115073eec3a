#pragma once

#include <QWidget>

/// The order in which people see the widgets of a page: that of its layouts. By themselves screen readers and Tab go
/// through them in the order in which they were made.
class DRReadingOrder {
public:
    /// The widgets of the page's layouts, those within others behind them.
    [[nodiscard]] static QWidgetList of(const QWidget& page);

    /// Has screen readers go in that order. To be called again when widgets have been added.
    static void arrange(const QWidget& page);

    /// Where Tab goes from the widget that has the focus: to the next of these that can take it now, or backward, in a
    /// ring. Null when none can.
    [[nodiscard]] static QWidget* tabStop(const QWidgetList& widgets, const QWidget* focused, bool isNext);
};
