#include "platform/ui/DRDarkStyle.h"

#include "platform/ui/DRDarkDrawing.h"
#include "platform/ui/DRDarkPalette.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QTextFormat>
#include <QToolTip>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr int kHeaderMargin = 6;
constexpr int kScrollBarExtent = 12;
constexpr int kShortestScrollHandle = 24;

constexpr int kFrameWidth = 2; ///< room for the ring

constexpr int kLeastButtonCharacters = 12; ///< keeps short labels from making small buttons

/// A painter with smooth edges, which gets back what it had.
class SmoothPainter {
public:
    explicit SmoothPainter(QPainter& painter) : m_painter(painter)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
    }
    ~SmoothPainter() { m_painter.restore(); }
    Q_DISABLE_COPY_MOVE(SmoothPainter)

private:
    QPainter& m_painter;
};

template <typename Element> struct Drawing {
    Element element;
    void (*draw)(const QStyleOption& option, QPainter& painter);
};

constexpr Drawing<QStyle::PrimitiveElement> kPrimitives[] = {
    {QStyle::PE_PanelButtonCommand, DRDarkDrawing::drawButton},
    {QStyle::PE_Frame, DRDarkDrawing::drawFrame},
    {QStyle::PE_FrameFocusRect, DRDarkDrawing::drawFocusRing},
    {QStyle::PE_IndicatorCheckBox, DRDarkDrawing::drawCheckBox},
};

constexpr Drawing<QStyle::ControlElement> kControls[] = {
    {QStyle::CE_HeaderSection, DRDarkDrawing::drawHeaderSection},
    {QStyle::CE_HeaderEmptyArea, DRDarkDrawing::drawHeaderSection},
    {QStyle::CE_ProgressBarGroove, DRDarkDrawing::drawProgressGroove},
};

/// Whether one of these draws the element; then it has.
template <typename Element, std::size_t count>
bool drawOneOf(const Drawing<Element> (&drawings)[count],
               Element element,
               const QStyleOption& option,
               QPainter& painter)
{
    const auto* const drawing = std::ranges::find(drawings, element, &Drawing<Element>::element);
    if (drawing == std::end(drawings)) {
        return false;
    }
    const SmoothPainter smooth(painter);
    drawing->draw(option, painter);
    return true;
}

/// Whether the focused cell of this widget lies in a row that is shown as selected anyway.
bool selectsRows(const QWidget* widget)
{
    const auto* const view = qobject_cast<const QAbstractItemView*>(widget);
    return view != nullptr && view->selectionBehavior() == QAbstractItemView::SelectRows;
}

/// Whether this is the scroll bar of an area without a frame that could show the focus.
bool scrollsWhatHasFocus(const QWidget* scrollBar)
{
    const QWidget* const box = scrollBar == nullptr ? nullptr : scrollBar->parentWidget();
    const auto* const area = qobject_cast<const QAbstractScrollArea*>(box == nullptr ? nullptr : box->parentWidget());
    return area != nullptr && area->frameShape() == QFrame::NoFrame && area->hasFocus();
}

} // namespace

DRDarkStyle::DRDarkStyle() : QProxyStyle(u"Fusion"_s) {}

void DRDarkStyle::applyToApplication()
{
    // The application owns the style.
    QApplication::setStyle(new DRDarkStyle);
    QApplication::setPalette(DRDarkPalette::palette());
    QToolTip::setPalette(DRDarkPalette::palette());
}

int DRDarkStyle::styleHint(StyleHint hint,
                           const QStyleOption* option,
                           const QWidget* widget,
                           QStyleHintReturn* data) const
{
    auto* const answer = qstyleoption_cast<QStyleHintReturnVariant*>(data);
    if (hint == SH_TextControl_FocusIndicatorTextCharFormat && answer != nullptr) {
        answer->variant = DRDarkDrawing::focusedLinkFormat();
        return 1;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}

void DRDarkStyle::drawPrimitive(PrimitiveElement element,
                                const QStyleOption* option,
                                QPainter* painter,
                                const QWidget* widget) const
{
    if (element == PE_FrameFocusRect && selectsRows(widget)) {
        return; // the list's frame has the ring
    }
    if (!drawOneOf(kPrimitives, element, *option, *painter)) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void DRDarkStyle::drawControl(ControlElement element,
                              const QStyleOption* option,
                              QPainter* painter,
                              const QWidget* widget) const
{
    const auto* const progress = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (element == CE_ProgressBarContents && progress != nullptr && progress->maximum > progress->minimum) {
        const SmoothPainter smooth(*painter);
        DRDarkDrawing::drawProgress(*progress, *painter);
        return;
    }
    if (!drawOneOf(kControls, element, *option, *painter)) {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void DRDarkStyle::drawComplexControl(ComplexControl control,
                                     const QStyleOptionComplex* option,
                                     QPainter* painter,
                                     const QWidget* widget) const
{
    const auto* const scrollBar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || scrollBar == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionSlider seen = *scrollBar;
    seen.state.setFlag(State_HasFocus, scrollsWhatHasFocus(widget));
    const SmoothPainter smooth(*painter);
    DRDarkDrawing::drawScrollBar(seen, subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
}

QRect DRDarkStyle::subControlRect(ComplexControl control,
                                  const QStyleOptionComplex* option,
                                  SubControl part,
                                  const QWidget* widget) const
{
    const auto* const scrollBar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || scrollBar == nullptr) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const QRect handle = DRDarkDrawing::scrollHandleRect(*scrollBar, kShortestScrollHandle);
    const bool isVertical = scrollBar->orientation == Qt::Vertical;
    QRect rect = option->rect;
    switch (part) {
    case SC_ScrollBarSlider:
        return handle;
    case SC_ScrollBarSubPage:
        isVertical ? rect.setBottom(handle.top() - 1) : rect.setRight(handle.left() - 1);
        return rect;
    case SC_ScrollBarAddPage:
        isVertical ? rect.setTop(handle.bottom() + 1) : rect.setLeft(handle.right() + 1);
        return rect;
    case SC_ScrollBarGroove:
        return rect;
    default: // no arrows
        return {};
    }
}

QRect DRDarkStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    return element == SE_PushButtonFocusRect ? option->rect : QProxyStyle::subElementRect(element, option, widget);
}

QSize DRDarkStyle::sizeFromContents(ContentsType type,
                                    const QStyleOption* option,
                                    const QSize& contents,
                                    const QWidget* widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type != CT_PushButton) {
        return size;
    }
    const QFontMetrics& metrics = option->fontMetrics;
    const QSize withPadding = contents + QSize(metrics.height() * 2, 0);
    const QSize least(kLeastButtonCharacters * metrics.averageCharWidth(), metrics.height() * 2);
    return size.expandedTo(withPadding).expandedTo(least);
}

QPixmap DRDarkStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap, const QStyleOption* option) const
{
    // A veil over the pictures of selected rows would make them hard to tell apart.
    return mode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}

int DRDarkStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_DefaultFrameWidth:
        return kFrameWidth;
    case PM_FocusFrameHMargin: // of the texts in lists, which then stand below their headings
        return kHeaderMargin - 1;
    case PM_ScrollBarExtent:
        return kScrollBarExtent;
    case PM_HeaderMargin:
        return kHeaderMargin;
    case PM_ScrollBarSliderMin:
        return kShortestScrollHandle;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight: // tick boxes grow with the font
        return widget == nullptr ? QProxyStyle::pixelMetric(metric, option, widget) : widget->fontMetrics().height();
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}
