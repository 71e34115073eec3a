#include "wizard/pages/DRMGSummaryTable.h"

#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRLeadingAlignment.h"

#include <QGridLayout>
#include <QLabel>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kMarkSize{20, 20}; // in points

enum Column { Mark, Name, Outcome, Counts };

/// Fills the layout of a widget, from the first line on.
class Table {
public:
    Table(QWidget& widget, const DRSequenceResourceManager& resources)
        : m_widget(widget),
          m_resources(resources),
          m_grid(*new QGridLayout(&widget)), // the widget owns it
          m_gap(widget.fontMetrics().height() / 4)
    {
        m_grid.setContentsMargins(0, 0, 0, 0);
        m_grid.setHorizontalSpacing(4 * m_gap);
        m_grid.setVerticalSpacing(m_gap / 2);
        m_grid.setColumnStretch(Counts, 1);
    }

    void add(const DRMGSummaryRow& row)
    {
        ++m_line;
        addMark(row.isLoss ? u"migrate_mark_unreadable"_s : row.imageName);
        makeLabel(row.name, QPalette::WindowText, Name, 1)->setWordWrap(false);
        const bool hasCounts = !row.counts.isEmpty();
        makeLabel(row.outcome, QPalette::WindowText, Outcome, hasCounts ? 1 : 2)->setWordWrap(!hasCounts);
        for (qsizetype index = 0; index < row.counts.size(); ++index) {
            m_line += index == 0 ? 0 : 1;
            makeLabel(row.counts[index], QPalette::PlaceholderText, Counts, 1);
        }
        for (const QString& text : row.losses) {
            ++m_line;
            makeLabel(text, QPalette::WindowText, Outcome, 2);
        }
        for (const QString& text : row.notes) {
            ++m_line;
            makeLabel(text, QPalette::PlaceholderText, Outcome, 2);
        }
    }

private:
    void addMark(const QString& imageName)
    {
        m_grid.setRowMinimumHeight(m_line, kMarkSize.height() + m_gap);
        if (!imageName.isEmpty()) {
            auto* const mark = new DRIconLabel(m_resources, &m_widget);
            mark->setIconSize(kMarkSize);
            mark->setIconName(imageName);
            m_grid.addWidget(mark, m_line, Mark, Qt::AlignVCenter);
        }
    }

    QLabel* makeLabel(const QString& text, QPalette::ColorRole role, int column, int columns)
    {
        auto* const label = new QLabel(text, &m_widget);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setAlignment(leadingAlignment(m_widget));
        label->setForegroundRole(role);
        m_grid.addWidget(label, m_line, column, 1, columns);
        return label;
    }

    QWidget& m_widget;
    const DRSequenceResourceManager& m_resources;
    QGridLayout& m_grid;
    int m_gap;
    int m_line = -1;
};

} // namespace

DRMGSummaryTable::DRMGSummaryTable(const DRSequenceResourceManager& resources, QWidget* parent)
    : QWidget(parent), m_resources(resources)
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
}

void DRMGSummaryTable::showRows(const std::vector<DRMGSummaryRow>& rows)
{
    if (m_table != nullptr && m_rows == rows) {
        return;
    }
    m_rows = rows;
    const std::unique_ptr<QWidget> former(std::exchange(m_table, new QWidget(this)));
    Table table(*m_table, m_resources);
    for (const DRMGSummaryRow& row : m_rows) {
        table.add(row);
    }
    layout()->addWidget(m_table);
    m_table->show();
}
