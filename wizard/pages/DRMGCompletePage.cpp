#include "wizard/pages/DRMGCompletePage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"
#include "wizard/pages/DRMGSummaryTable.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostRemarkLines = 7;

} // namespace

DRMGCompletePage::DRMGCompletePage(DRMGSequenceStepComplete& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_image(makePicture()),
      m_body(makeHtmlView()),
      m_summaryTitle(makeLabel()),
      m_summary(new DRMGSummaryTable(tools.context.resources, this)),
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
    m_summary->showRows(m_step.summaryRows());
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
