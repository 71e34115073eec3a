#include "platform/ui/DRReadingOrder.h"

#include <QLayout>

#include <algorithm>
#include <iterator>

namespace {

QWidgetList widgetsOf(const QLayout& layout)
{
    QWidgetList widgets;
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem* const item = layout.itemAt(index);
        QWidget* const widget = item->widget();
        if (widget != nullptr) {
            widgets.append(widget);
        }
        const QLayout* const within = widget == nullptr ? item->layout() : widget->layout();
        widgets += within == nullptr ? QWidgetList() : widgetsOf(*within);
    }
    return widgets;
}

} // namespace

QWidgetList DRReadingOrder::of(const QWidget& page)
{
    return page.layout() == nullptr ? QWidgetList() : widgetsOf(*page.layout());
}

void DRReadingOrder::arrange(const QWidget& page)
{
    for (QWidget* const widget : of(page)) {
        widget->raise(); // screen readers go by the order from the bottom to the top
    }
}

QWidget* DRReadingOrder::tabStop(const QWidgetList& widgets, const QWidget* focused, bool isNext)
{
    QWidgetList stops;
    std::ranges::copy_if(widgets, std::back_inserter(stops), [focused](const QWidget* widget) {
        return widget == focused ||
               ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled());
    });
    if (stops.isEmpty()) {
        return nullptr;
    }
    const qsizetype now = stops.indexOf(focused);
    if (now < 0) {
        return isNext ? stops.front() : stops.back();
    }
    return stops.at((now + (isNext ? 1 : stops.size() - 1)) % stops.size());
}
