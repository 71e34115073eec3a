#include "wizard/widgets/DRMigrateMemoryWarningBar.h"

#include "platform/core/DRLocalizedStrings.h"
#include "platform/core/DRSizeText.h"
#include "platform/ui/DRAccessibleRole.h"
#include "platform/ui/DRDarkPalette.h"
#include "wizard/widgets/DRMigrateMemoryWarningShapes.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using namespace DRMigrateMemoryWarningKeys;

constexpr QSize kSize{320, 24};
constexpr QSize kMinimumSize{120, 16};

void fill(QPainter& painter, const QRectF& shape, qreal cornerRadius, const QColor& color)
{
    painter.setBrush(color);
    painter.drawRoundedRect(shape, cornerRadius, cornerRadius);
}

void fillColored(QPainter& painter,
                 const DRMigrateMemoryWarningShapes& shapes,
                 const DRMigrateMemoryWarningColors& colors)
{
    fill(painter, shapes.hilite, shapes.cornerRadius, colors.hilite);
    fill(painter, shapes.shadow, shapes.cornerRadius, colors.shadow);
    fill(painter, shapes.body, shapes.cornerRadius, colors.color);
}

QRectF mirrored(const QRectF& rect, const QRectF& bounds)
{
    return rect.translated(bounds.left() + bounds.right() - rect.left() - rect.right(), 0);
}

} // namespace

DRMigrateMemoryWarningBar::DRMigrateMemoryWarningBar(const DRLocalizedStrings& strings, QWidget* parent)
    : QWidget(parent),
      m_partsDrawOrder(DRMigrateMemoryWarningPart::drawOrder()),
      m_overflowHiliteColor(0xef, 0xb5, 0xb4),
      m_overflowShadowColor(0xc7, 0x42, 0x40),
      m_freeText(strings.text(u"wizard_storage_free"_s))
{
    for (const QString& key : std::as_const(m_partsDrawOrder)) {
        DRMigrateMemoryWarningPart part = DRMigrateMemoryWarningPart::styledPartWithKey(key);
        part.tooltip = strings.text(part.tooltip);
        m_parts.insert(key, part);
    }
    DRAccessibleRole::give(*this, QAccessible::Chart);
    setAccessibleName(strings.text(u"wizard_name_storage"_s));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

DRMigrateMemoryWarningBar::Figures DRMigrateMemoryWarningBar::figuresOf(const DRMGStorageFigures& storage)
{
    return {{kMusic, storage.music}, {kImage, storage.images}, {kVideo, storage.videos},
            {kOther, storage.other}, {kFree, storage.free},    {kTotal, storage.total}};
}

void DRMigrateMemoryWarningBar::updateParts(const Figures& figures)
{
    for (const QString& key : std::as_const(m_partsDrawOrder)) {
        const auto part = m_parts.find(key);
        if (part != m_parts.end() && figures.contains(key)) {
            part->value = figures.value(key);
        }
    }
    m_total = figures.value(kTotal);
    m_free = figures.value(kFree);
    setAccessibleDescription(description());
    update();
}

QString DRMigrateMemoryWarningBar::tooltipAt(const QPointF& position) const
{
    const auto part = std::ranges::find_if(
        m_parts, [&position](const DRMigrateMemoryWarningPart& each) { return each.rect.contains(position); });
    return part == m_parts.end() ? QString() : part->tooltip;
}

QSize DRMigrateMemoryWarningBar::sizeHint() const
{
    return kSize;
}

QSize DRMigrateMemoryWarningBar::minimumSizeHint() const
{
    return kMinimumSize;
}

bool DRMigrateMemoryWarningBar::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    const QHelpEvent* const help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), tooltipAt(help->pos()), this);
    return true;
}

void DRMigrateMemoryWarningBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    drawRect(painter);
}

void DRMigrateMemoryWarningBar::drawRect(QPainter& painter)
{
    const auto shapes = DRMigrateMemoryWarningShapes::forBounds(rect());
    fill(painter, shapes.outline, shapes.cornerRadius, QColor::fromRgb(DRDarkPalette::kTable));
    placeParts();
    if (m_total == 0) {
        return;
    }
    if (m_free == 0) {
        fillColored(painter, shapes, {m_overflowColor, m_overflowShadowColor, m_overflowHiliteColor});
        return;
    }
    for (const QString& key : std::as_const(m_partsDrawOrder)) {
        const DRMigrateMemoryWarningPart part = m_parts.value(key);
        const QRectF visible = part.rect.intersected(shapes.outline);
        if (!visible.isEmpty()) {
            painter.setClipRect(visible);
            fillColored(painter, shapes, {part.color, part.shadow, part.hilite});
        }
    }
}

/// Where the parts are drawn now: nowhere while the bar is empty or overflows.
void DRMigrateMemoryWarningBar::placeParts()
{
    for (DRMigrateMemoryWarningPart& part : m_parts) {
        part.rect = QRectF();
    }
    if (m_total == 0 || m_free == 0) {
        return;
    }
    std::vector<quint64> values;
    for (const QString& key : std::as_const(m_partsDrawOrder)) {
        values.push_back(m_parts.value(key).value);
    }
    const std::vector<QRectF> rects = memoryWarningRects(values, m_total, rect());
    for (std::size_t i = 0; i < rects.size(); ++i) {
        DRMigrateMemoryWarningPart& part = m_parts[m_partsDrawOrder.at(static_cast<qsizetype>(i))];
        part.rect = isRightToLeft() ? mirrored(rects[i], rect()) : rects[i];
    }
}

QString DRMigrateMemoryWarningBar::description() const
{
    QStringList figures;
    for (const QString& key : m_partsDrawOrder) {
        const DRMigrateMemoryWarningPart part = m_parts.value(key);
        figures.append(u"%1: %2"_s.arg(part.tooltip, sizeText(part.value, QLocale())));
    }
    figures.append(u"%1: %2"_s.arg(m_freeText, sizeText(m_free, QLocale())));
    return m_total == 0 ? QString() : figures.join(u", "_s);
}
