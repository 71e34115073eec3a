#include "wizard/pages/DRMGMemoryWarningPage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "wizard/pages/DRMGStorageLegend.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"
#include "wizard/widgets/DRMigrateMemoryWarningBar.h"

#include <QLabel>
#include <QVBoxLayout>

DRMGMemoryWarningPage::DRMGMemoryWarningPage(DRMGSequenceStepMemoryWarning& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_body(makeHtmlView()),
      m_checkboxes(*this,
                   tools,
                   {.label = [&step](const QString& key) { return step.boxLabel(key); },
                    .stateText = [&step](const DRMGSelectionBox& box) { return step.boxStateText(box); },
                    .setTicked = [&step](const QString& key, bool isTicked) { step.setTicked(key, isTicked); }}),
      m_memoryBar(new DRMigrateMemoryWarningBar(tools.context.strings, this)),
      m_legend(new DRMGStorageLegend(this)),
      m_pressNext(makeHtmlView()),
      m_status(makeLabel())
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(smallGap() * 3 / 2);
    column->addWidget(m_body);
    addEntries(*column);
    column->addWidget(m_memoryBar);
    column->addWidget(m_legend);
    column->addWidget(m_pressNext);
    column->addWidget(m_status);
    column->addStretch(1);
}

void DRMGMemoryWarningPage::addEntries(QBoxLayout& column)
{
    auto* const entries = new QVBoxLayout;
    entries->setSpacing(smallGap() / 2);
    for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
        if (DRMGSelection::mediaKeys().contains(category.key)) {
            entries->addWidget(m_checkboxes.add(category), 0, Qt::AlignLeading);
        }
    }
    column.addLayout(entries);
}

void DRMGMemoryWarningPage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
    m_checkboxes.show(m_step.boxes());
    m_memoryBar->updateParts(DRMigrateMemoryWarningBar::figuresOf(m_step.storage()));
    m_legend->showRows(m_step.storageRows());
    showHtml(*m_pressNext, m_step.pressNextHtml());
    m_status->setText(m_step.statusText());
    m_status->setVisible(!m_step.statusText().isEmpty());
}
