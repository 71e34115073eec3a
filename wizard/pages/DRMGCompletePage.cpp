#include "wizard/pages/DRMGCompletePage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kMarkSize{20, 20}; // in points

constexpr int kMostRemarkLines = 7;

enum Column { Mark, Name, Outcome, Counts };

} // namespace

DRMGCompletePage::DRMGCompletePage(DRMGSequenceStepComplete& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_image(makePicture()),
      m_body(makeHtmlView()),
      m_summaryTitle(makeLabel()),
      m_summary(new QWidget(this)),
      m_remarks(new QPlainTextEdit(this)),
      m_note(makeHtmlView())
{
    QFont titleFont = m_summaryTitle->font();
    titleFont.setBold(true);
    m_summaryTitle->setFont(titleFont);
    m_remarks->setReadOnly(true);
    m_remarks->setTabChangesFocus(true);
    QHBoxLayout* const outcome = makePictureRow(m_image);
    outcome->addWidget(m_body, 1, Qt::AlignVCenter);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addLayout(outcome);
    column->addWidget(m_note);
    column->addWidget(m_remarks);
    column->addWidget(m_summaryTitle);
    column->addWidget(m_summary);
    column->addStretch(1);
}

void DRMGCompletePage::render()
{
    m_image->setIconName(m_step.imageName());
    m_image->setAccessibleName(m_step.imageText());
    showHtml(*m_body, m_step.bodyHtml());
    showHtml(*m_note, m_step.noteHtml());
    renderRemarks();
    m_summaryTitle->setText(m_step.summaryTitle());
    m_summaryTitle->setVisible(!m_step.summaryRows().empty());
    if (m_shownRows != m_step.summaryRows()) {
        renderSummary();
    }
}

void DRMGCompletePage::renderRemarks()
{
    const QStringList& remarks = m_step.remarks();
    // One line more, since a remark may take two.
    const int lines = std::clamp(static_cast<int>(remarks.size()) + 1, 2, kMostRemarkLines);
    m_remarks->setAccessibleName(m_step.localizedTitle());
    m_remarks->setPlainText(remarks.join(u'\n'));
    m_remarks->setFixedHeight(lines * fontMetrics().lineSpacing() + smallGap() * 2);
    m_remarks->setVisible(!remarks.isEmpty());
}

void DRMGCompletePage::renderSummary()
{
    m_shownRows = m_step.summaryRows();
    auto* const summary = new QWidget(this);
    auto* const table = new QGridLayout(summary);
    table->setContentsMargins(0, 0, 0, 0);
    table->setHorizontalSpacing(smallGap() * 2);
    table->setVerticalSpacing(smallGap() / 4);
    table->setColumnStretch(Counts, 1);
    for (const DRMGSummaryRow& row : m_shownRows) {
        addRow(*table, row);
    }
    const std::unique_ptr<QLayoutItem> former(layout()->replaceWidget(m_summary, summary));
    m_summary->deleteLater();
    m_summary = summary;
    m_summary->show();
}

void DRMGCompletePage::addRow(QGridLayout& table, const DRMGSummaryRow& row)
{
    int at = table.count() == 0 ? 0 : table.rowCount(); // an empty grid has a row
    if (row.isLoss || !row.imageName.isEmpty()) {
        DRIconLabel* const mark = makePicture(kMarkSize);
        mark->setIconName(row.isLoss ? u"migrate_mark_unreadable"_s : row.imageName);
        table.addWidget(mark, at, Mark, Qt::AlignTop);
        table.setRowMinimumHeight(at, mark->sizeHint().height() + smallGap() / 2);
    }
    QLabel* const name = makeText(row.name, QPalette::WindowText);
    name->setWordWrap(false);
    table.addWidget(name, at, Name);
    QLabel* const outcome = makeText(row.outcome, QPalette::WindowText);
    outcome->setWordWrap(row.counts.isEmpty());
    table.addWidget(outcome, at, Outcome, 1, row.counts.isEmpty() ? 2 : 1);
    for (qsizetype index = 0; index < row.counts.size(); ++index) {
        table.addWidget(makeText(row.counts[index], QPalette::PlaceholderText), index == 0 ? at : ++at, Counts);
    }
    for (const QString& text : row.losses) {
        table.addWidget(makeText(text, QPalette::WindowText), ++at, Outcome, 1, 2);
    }
    for (const QString& text : row.notes) {
        table.addWidget(makeText(text, QPalette::PlaceholderText), ++at, Outcome, 1, 2);
    }
}

QLabel* DRMGCompletePage::makeText(const QString& text, QPalette::ColorRole role)
{
    QLabel* const label = makeLabel();
    label->setText(text);
    label->setForegroundRole(role);
    return label;
}
