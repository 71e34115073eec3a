#include "wizard/pages/DRMGStorageLegend.h"

#include "platform/core/DRSizeText.h"
#include "platform/ui/DRDarkPalette.h"
#include "wizard/widgets/DRMigrateMemoryWarningBar.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>

namespace {

using Part = DRMGStorageLegend::Row::Part;

constexpr qreal kCornerRadius = 3; // in points

constexpr quint64 kWidestBytes = 1000 * 1024 - 1; ///< keeps the column as wide as it is while figures change

enum Column { Color, Name, Size, Rest };

QColor colorOf(Part part)
{
    using namespace DRMigrateMemoryWarningKeys;
    const auto ofPart = [](const QString& key) { return DRMigrateMemoryWarningPart::styledPartWithKey(key).color; };
    switch (part) {
    case Part::Other:
        return ofPart(kOther);
    case Part::Music:
        return ofPart(kMusic);
    case Part::Videos:
        return ofPart(kVideo);
    case Part::Images:
        return ofPart(kImage);
    case Part::Free:
        return QColor::fromRgb(DRDarkPalette::kTable);
    case Part::Missing:
        return DRMigrateMemoryWarningBar::overflowColor();
    }
    return {};
}

} // namespace

/// A small square of one colour.
class DRMGStorageLegend::Swatch final : public QWidget {
public:
    explicit Swatch(QWidget* parent) : QWidget(parent)
    {
        const int side = fontMetrics().ascent();
        setFixedSize(side, side);
    }

    void setColor(const QColor& color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor::fromRgb(DRDarkPalette::kLine));
        painter.setBrush(m_color);
        painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), kCornerRadius, kCornerRadius);
    }

private:
    QColor m_color;
};

DRMGStorageLegend::DRMGStorageLegend(QWidget* parent) : QWidget(parent), m_grid(new QGridLayout(this))
{
    const int line = fontMetrics().height();
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(line * 2 / 3);
    m_grid->setVerticalSpacing(line / 4);
    m_grid->setColumnMinimumWidth(Size, fontMetrics().horizontalAdvance(sizeText(kWidestBytes, QLocale())));
    m_grid->setColumnStretch(Rest, 1);
}

void DRMGStorageLegend::showRows(const std::vector<Row>& rows)
{
    while (m_lines.size() < rows.size()) {
        addLine();
    }
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const Line& line = m_lines[index];
        line.swatch->setColor(colorOf(rows[index].part));
        line.name->setText(rows[index].label);
        line.size->setText(sizeText(rows[index].sizeBytes, QLocale()));
    }
}

void DRMGStorageLegend::addLine()
{
    const int at = static_cast<int>(m_lines.size());
    const Line line{.swatch = new Swatch(this), .name = new QLabel(this), .size = new QLabel(this)};
    line.name->setTextFormat(Qt::PlainText);
    line.size->setTextFormat(Qt::PlainText);
    m_grid->addWidget(line.swatch, at, Color, Qt::AlignVCenter);
    m_grid->addWidget(line.name, at, Name);
    m_grid->addWidget(line.size, at, Size, Qt::AlignTrailing | Qt::AlignVCenter);
    m_lines.push_back(line);
}
