#include "wizard/pages/DRMGRestoreOutcomePage.h"

#include "platform/ui/DRElidedLabel.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"
#include "wizard/pages/DRMGSummaryTable.h"

#include <QHBoxLayout>
#include <QLabel>

DRMGRestoreOutcomePage::DRMGRestoreOutcomePage(DRMGRestoreStepOutcome& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_image(makePicture()),
      m_body(makeHtmlView()),
      m_rowsTitle(makeLabel()),
      m_rows(new DRMGSummaryTable(tools.context.resources, this)),
      m_kept(new QWidget(this)),
      m_keptText(makeLabel()),
      m_keptPath(new DRElidedLabel(this)),
      m_remarks(makeLabel())
{
    QFont titleFont = m_rowsTitle->font();
    titleFont.setBold(true);
    m_rowsTitle->setFont(titleFont);
    m_keptPath->setForegroundRole(QPalette::PlaceholderText);
    QHBoxLayout* const outcome = makePictureRow(m_image);
    outcome->addWidget(m_body, 1, Qt::AlignVCenter);
    auto* const apps = new QVBoxLayout;
    apps->setSpacing(smallGap());
    apps->addWidget(m_rowsTitle);
    apps->addWidget(m_rows);
    auto* const kept = new QVBoxLayout(m_kept);
    kept->setContentsMargins(0, 0, 0, 0);
    kept->setSpacing(smallGap() / 2);
    kept->addWidget(m_keptText);
    kept->addWidget(m_keptPath);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addLayout(outcome);
    column->addLayout(apps);
    column->addWidget(m_kept);
    column->addWidget(m_remarks);
    column->addStretch(1);
}

void DRMGRestoreOutcomePage::render()
{
    m_image->setIconName(m_step.imageName());
    m_image->setAccessibleName(m_step.imageText());
    showHtml(*m_body, m_step.bodyHtml());
    m_rowsTitle->setText(m_step.rowsTitle());
    m_rows->showRows(m_step.rows());
    m_keptText->setText(m_step.keptText());
    m_keptPath->setWholeText(m_step.keptPath());
    m_kept->setVisible(!m_step.keptPath().isEmpty());
    m_remarks->setText(m_step.remarks().join(u'\n'));
    m_remarks->setVisible(!m_step.remarks().isEmpty());
}
