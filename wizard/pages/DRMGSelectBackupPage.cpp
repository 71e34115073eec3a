#include "wizard/pages/DRMGSelectBackupPage.h"

#include "platform/sequence/DRSequence.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRRowTable.h"

#include <QIcon>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum Column { Name, Date };

// In points.
constexpr int kRowHeight = 32;
constexpr int kIconSide = 24;
constexpr int kLeastRows = 4; ///< what the table has room for at least

} // namespace

DRMGSelectBackupPage::DRMGSelectBackupPage(DRMGSequenceStepSelectBackup& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_body(makeHtmlView()),
      m_table(new DRRowTable(step.listName(), {step.nameColumnTitle(), step.dateColumnTitle()}, this)),
      m_notShown(makeHtmlView(Tooltips::OfLinks))
{
    setUpTable();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addWidget(m_body);
    column->addWidget(m_table, 1);
    column->addWidget(m_notShown);
    setFocusProxy(m_table);
}

void DRMGSelectBackupPage::setUpTable()
{
    const int rowHeight = std::max(kRowHeight, fontMetrics().height() * 3 / 2);
    m_table->setRowHeight(rowHeight);
    m_table->setIconSize({kIconSide, kIconSide});
    m_table->setWordWrap(false);
    m_table->setMinimumHeight((kLeastRows + 1) * rowHeight);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &DRMGSelectBackupPage::selectionChanged);
    connect(m_table, &QTableWidget::itemActivated, this, [this] { m_step.sequence()->pressNext(); });
}

void DRMGSelectBackupPage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
    showHtml(*m_notShown, m_step.notShownHtml());
    if (m_shownBackups != m_step.backupList()) {
        fillTable();
    }
    if (m_step.selectedRow() < 0) {
        const QSignalBlocker quiet(m_table); // the step knows it already
        m_table->clearSelection();
    }
}

void DRMGSelectBackupPage::fillTable()
{
    const QSignalBlocker quiet(m_table);
    m_shownBackups = m_step.backupList();
    const int rows = static_cast<int>(m_shownBackups.size());
    m_table->setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        const auto shown = m_step.row(row);
        auto* const name =
            new QTableWidgetItem(QIcon(tools().context.resources.pathForResource(shown.imageName)), shown.name);
        name->setToolTip(shown.imageText);
        name->setData(Qt::AccessibleTextRole, shown.name + u", "_s + shown.imageText);
        m_table->setItem(row, Name, name);
        m_table->setItem(row, Date, new QTableWidgetItem(shown.date));
    }
}

void DRMGSelectBackupPage::selectionChanged()
{
    m_step.selectRow(m_table->selectedRow());
}
