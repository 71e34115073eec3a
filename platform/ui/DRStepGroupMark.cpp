#include "platform/ui/DRStepGroupMark.h"

#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRTick.h"

#include <QLocale>
#include <QPainter>

#include <array>
#include <cstddef>

namespace {

struct Look {
    QRgb fill;
    QRgb edge;
    QRgb sign; ///< what stands in the circle
};

/// In the order of DRStepGroupMark::State.
constexpr std::array<Look, 4> kLooks = {{
    {DRDarkPalette::kSide, DRDarkPalette::kLink, DRDarkPalette::kLink},
    {DRDarkPalette::kSide, DRDarkPalette::kAlert, DRDarkPalette::kAlert},
    {DRDarkPalette::kAccent, DRDarkPalette::kAccent, DRDarkPalette::kOnAccent},
    {DRDarkPalette::kSide, DRDarkPalette::kDisabledText, DRDarkPalette::kMutedText},
}};

constexpr double kSideShare = 1.6; ///< of the height of a line of text
constexpr double kNumberShare = 0.85;
constexpr double kEdge = 1.5; ///< width of the circle's line, in points
constexpr double kTick = 2;

} // namespace

DRStepGroupMark::DRStepGroupMark(int number, QWidget* parent) : QWidget(parent), m_number(number)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DRStepGroupMark::setState(State state)
{
    m_state = state;
    update();
}

QSize DRStepGroupMark::sizeHint() const
{
    const int side = static_cast<int>(kSideShare * fontMetrics().height());
    return {side, side};
}

void DRStepGroupMark::paintEvent(QPaintEvent*)
{
    const Look& look = kLooks[static_cast<std::size_t>(m_state)];
    const QRectF circle = QRectF(rect()).adjusted(kEdge, kEdge, -kEdge, -kEdge);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(look.edge), kEdge));
    painter.setBrush(QColor(look.fill));
    painter.drawEllipse(circle);

    painter.setPen(QPen(QColor(look.sign), kTick, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (m_state == State::Done) {
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(tickWithin(circle));
        return;
    }
    paintText(painter, circle);
}

void DRStepGroupMark::paintText(QPainter& painter, const QRectF& circle) const
{
    QFont numberFont = font();
    numberFont.setPointSizeF(numberFont.pointSizeF() * kNumberShare);
    numberFont.setBold(m_state == State::Current || m_state == State::Failed);
    painter.setFont(numberFont);
    painter.drawText(circle, Qt::AlignCenter,
                     m_state == State::Failed ? QStringLiteral("!") : locale().toString(m_number));
}
