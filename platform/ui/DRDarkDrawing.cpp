#include "platform/ui/DRDarkDrawing.h"

#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRTick.h"

#include <QPainter>
#include <QStyleOption>
#include <QTextFormat>

#include <algorithm>

namespace {

// In points.
constexpr double kRadius = 4;
constexpr double kButtonRadius = 6;
constexpr double kRing = 2;
constexpr double kRingGap = 3; ///< from a button's outer edge to its face while the ring is between the two
constexpr double kThinLine = 1;
constexpr double kTickLine = 2;

// In percent, as QColor takes it.
constexpr int kHoverLight = 106;
constexpr int kPressedDark = 120;
constexpr double kScrollHandleWidth = 6;

QRectF inset(const QRectF& rect, double by)
{
    return rect.adjusted(by, by, -by, -by);
}

bool has(const QStyleOption& option, QStyle::StateFlag flag)
{
    return option.state.testFlag(flag);
}

QColor faceOf(const QStyleOption& option)
{
    const QColor color = option.palette.color(QPalette::Button);
    if (has(option, QStyle::State_Sunken) || has(option, QStyle::State_On)) {
        return color.darker(kPressedDark);
    }
    return has(option, QStyle::State_MouseOver) && has(option, QStyle::State_Enabled) ? color.lighter(kHoverLight)
                                                                                      : color;
}

} // namespace

void DRDarkDrawing::drawFocusRing(const QStyleOption& option, QPainter& painter)
{
    painter.setPen(QPen(QColor(DRDarkPalette::kLink), kRing));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inset(option.rect, kRing / 2), kRadius + kRing, kRadius + kRing);
}

void DRDarkDrawing::drawFrame(const QStyleOption& option, QPainter& painter)
{
    const QColor color =
        has(option, QStyle::State_HasFocus) ? QColor(DRDarkPalette::kLink) : option.palette.color(QPalette::Base);
    painter.setPen(QPen(color, kRing));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inset(option.rect, kRing / 2), kRing, kRing); // what is inside has sharp corners
}

void DRDarkDrawing::drawButton(const QStyleOption& option, QPainter& painter)
{
    const QColor face = faceOf(option);
    const bool isMain = option.palette.color(QPalette::Button) == QColor(DRDarkPalette::kAccent);
    const bool isFocused = has(option, QStyle::State_HasFocus);
    const double radius = isFocused ? kRadius : kButtonRadius;
    painter.setPen(isMain ? QPen(face) : QPen(QColor(DRDarkPalette::kLine), kThinLine));
    painter.setBrush(face);
    painter.drawRoundedRect(inset(option.rect, (isFocused ? kRingGap : 0) + kThinLine / 2), radius, radius);
    if (isFocused) {
        drawFocusRing(option, painter);
    }
}

void DRDarkDrawing::drawCheckBox(const QStyleOption& option, QPainter& painter)
{
    const bool isEnabled = has(option, QStyle::State_Enabled);
    const bool isMixed = has(option, QStyle::State_NoChange);
    const bool isFilled = isMixed || has(option, QStyle::State_On);
    const QRectF box = inset(option.rect, kThinLine / 2);
    const QColor edge = isEnabled ? DRDarkPalette::kMutedText : DRDarkPalette::kDisabledText;
    const QColor fill = isEnabled && isFilled ? DRDarkPalette::kAccent : DRDarkPalette::kTable;
    painter.setPen(QPen(isFilled && isEnabled ? fill : edge, kThinLine));
    painter.setBrush(fill);
    painter.drawRoundedRect(box, kRadius / 2, kRadius / 2);
    painter.setPen(QPen(isEnabled ? QColor(DRDarkPalette::kOnAccent) : edge, kTickLine, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    if (isMixed) {
        const double middle = box.center().y();
        painter.drawLine(QPointF(box.left() + box.width() / 4, middle), QPointF(box.right() - box.width() / 4, middle));
    } else if (isFilled) {
        painter.drawPath(tickWithin(box));
    }
}

void DRDarkDrawing::drawHeaderSection(const QStyleOption& option, QPainter& painter)
{
    painter.fillRect(option.rect, QColor(DRDarkPalette::kSide));
    painter.setPen(QPen(QColor(DRDarkPalette::kLine), kThinLine));
    painter.drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
}

void DRDarkDrawing::drawProgressGroove(const QStyleOption& option, QPainter& painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(DRDarkPalette::kTable));
    painter.drawRoundedRect(option.rect, kRadius, kRadius);
}

void DRDarkDrawing::drawProgress(const QStyleOptionProgressBar& option, QPainter& painter)
{
    const double whole = std::max(1, option.maximum - option.minimum);
    const double share = std::clamp((option.progress - option.minimum) / whole, 0.0, 1.0);
    if (share <= 0) {
        return;
    }
    QRectF done = option.rect;
    done.setWidth(std::max(done.width() * share, 2 * kRadius));
    if ((option.direction == Qt::RightToLeft) != option.invertedAppearance) {
        done.moveRight(QRectF(option.rect).right());
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.highlight());
    painter.drawRoundedRect(done, kRadius, kRadius);
}

void DRDarkDrawing::drawScrollBar(const QStyleOptionSlider& option, const QRect& handle, QPainter& painter)
{
    painter.fillRect(option.rect, option.palette.window());
    const bool isHeld = has(option, QStyle::State_Sunken) || has(option, QStyle::State_MouseOver);
    QRectF bar = handle;
    if (option.orientation == Qt::Vertical) {
        bar.setWidth(kScrollHandleWidth);
    } else {
        bar.setHeight(kScrollHandleWidth);
    }
    bar.moveCenter(QRectF(handle).center());
    painter.setPen(Qt::NoPen);
    const QRgb plain = isHeld ? DRDarkPalette::kMutedText : DRDarkPalette::kDisabledText;
    painter.setBrush(QColor(has(option, QStyle::State_HasFocus) ? DRDarkPalette::kLink : plain));
    painter.drawRoundedRect(bar, kScrollHandleWidth / 2, kScrollHandleWidth / 2);
}

QRect DRDarkDrawing::scrollHandleRect(const QStyleOptionSlider& option, int shortest)
{
    const bool isVertical = option.orientation == Qt::Vertical;
    const int room = isVertical ? option.rect.height() : option.rect.width();
    const qint64 range = qint64{option.maximum} - option.minimum;
    const qint64 share = range == 0 ? room : qint64{room} * option.pageStep / (range + option.pageStep);
    const int length = std::clamp(static_cast<int>(share), std::min(shortest, room), room);
    const int start = QStyle::sliderPositionFromValue(option.minimum, option.maximum, option.sliderPosition,
                                                      room - length, option.upsideDown);
    return isVertical ? QRect(option.rect.x(), option.rect.y() + start, option.rect.width(), length)
                      : QRect(option.rect.x() + start, option.rect.y(), length, option.rect.height());
}

QTextFormat DRDarkDrawing::focusedLinkFormat()
{
    QTextCharFormat format;
    format.setBackground(QColor(DRDarkPalette::kAccent));
    format.setForeground(QColor(DRDarkPalette::kOnAccent));
    return format;
}
