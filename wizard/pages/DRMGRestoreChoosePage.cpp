#include "wizard/pages/DRMGRestoreChoosePage.h"

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRRowTable.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum Column { Name, Date, Phone, State };

constexpr int kLeastRows = 2;        ///< what the table has room for at least
constexpr int kPhoneCharacters = 18; ///< the most of the column's width, in average characters; longer ones are wrapped

} // namespace

DRMGRestoreChoosePage::DRMGRestoreChoosePage(DRMGRestoreStepChoose& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_body(makeHtmlView()),
      m_table(new DRRowTable(step.listName(), step.columnTitles(), this)),
      m_status(makeLabel()),
      m_plan(makeLabel()),
      m_choosePhone(makeButton(u"wizard_choose_phone"_s, tools.choosePhone))
{
    setUpTable();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addWidget(m_body);
    column->addWidget(m_table, 1000); // as high as its rows, as far as there is room
    column->addWidget(m_status);
    column->addWidget(m_plan);
    if (m_choosePhone != nullptr) {
        column->addWidget(m_choosePhone, 0, Qt::AlignLeading);
    }
    column->addStretch(1);
    setFocusProxy(m_table);
}

void DRMGRestoreChoosePage::setUpTable()
{
    const int rowHeight = fontMetrics().height() * 5 / 2; // two lines, since names are long
    m_table->horizontalHeader()->setSectionResizeMode(Phone, QHeaderView::Fixed);
    m_table->setRowHeight(rowHeight);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_table->setMinimumHeight(kLeastRows * rowHeight);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &DRMGRestoreChoosePage::selectionChanged);
    connect(m_table, &QTableWidget::itemActivated, this, [this] { m_step.sequence()->pressNext(); });
}

void DRMGRestoreChoosePage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
    if (m_shownRows != m_step.rows()) {
        fillTable();
    }
    m_table->setVisible(!m_shownRows.empty());
    showSelection();
    m_status->setText(m_step.statusText());
    m_status->setVisible(!m_step.statusText().isEmpty());
    m_plan->setText(m_step.planText());
    m_plan->setVisible(!m_step.planText().isEmpty());
    if (m_choosePhone != nullptr) {
        m_choosePhone->setVisible(m_step.wantsPhone());
    }
}

void DRMGRestoreChoosePage::fillTable()
{
    const QSignalBlocker quiet(m_table);
    m_shownRows = m_step.rows();
    m_table->setRowCount(static_cast<int>(m_shownRows.size()));
    int at = 0;
    for (const auto& row : m_shownRows) {
        int column = Name;
        for (const QString& text : {row.name, row.date, row.phone, row.state}) {
            auto* const item = new QTableWidgetItem(text);
            item->setToolTip(text); // the column may be too narrow for it
            if (!row.canGoBack) {
                item->setForeground(palette().placeholderText());
            }
            m_table->setItem(at, column++, item);
        }
        ++at;
    }
    const int widest = kPhoneCharacters * fontMetrics().averageCharWidth();
    m_table->resizeColumnToContents(Phone);
    m_table->setColumnWidth(Phone, std::min(m_table->columnWidth(Phone), widest));
    const int rows = std::max(at, kLeastRows) * m_table->verticalHeader()->defaultSectionSize();
    m_table->setMaximumHeight(rows + m_table->horizontalHeader()->sizeHint().height() + 2 * m_table->frameWidth());
}

void DRMGRestoreChoosePage::showSelection()
{
    const QSignalBlocker quiet(m_table); // the step knows it already
    if (m_step.selectedRow() < 0) {
        m_table->clearSelection();
    } else if (m_table->selectedRow() != m_step.selectedRow()) {
        m_table->selectRow(m_step.selectedRow());
    }
}

void DRMGRestoreChoosePage::selectionChanged()
{
    m_step.selectRow(m_table->selectedRow());
}
