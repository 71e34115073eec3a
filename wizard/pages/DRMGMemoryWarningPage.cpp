#include "wizard/pages/DRMGMemoryWarningPage.h"

#include "platform/core/DRSizeText.h"
#include "platform/ui/DRHtmlTextView.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"
#include "wizard/widgets/DRMigrateMemoryWarningBar.h"

#include <QGridLayout>
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
      m_figures(new QGridLayout),
      m_pressNext(makeHtmlView()),
      m_status(makeLabel())
{
    m_figures->setHorizontalSpacing(largeGap());
    m_figures->setVerticalSpacing(smallGap() / 2);
    m_figures->setColumnStretch(2, 1);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(smallGap() * 3 / 2);
    column->addWidget(m_body);
    addEntries(*column);
    column->addWidget(m_memoryBar);
    column->addLayout(m_figures);
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
    showStorage();
    showHtml(*m_pressNext, m_step.pressNextHtml());
    m_status->setText(m_step.statusText());
    m_status->setVisible(!m_step.statusText().isEmpty());
}

void DRMGMemoryWarningPage::showStorage()
{
    const auto rows = m_step.storageRows();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (index == m_sizes.size()) {
            QLabel* const name = makeLabel();
            name->setText(rows[index].label);
            name->setWordWrap(false);
            m_sizes.push_back(makeLabel());
            m_sizes.back()->setWordWrap(false);
            m_figures->addWidget(name, static_cast<int>(index), 0);
            m_figures->addWidget(m_sizes.back(), static_cast<int>(index), 1, Qt::AlignTrailing | Qt::AlignVCenter);
        }
        m_sizes[index]->setText(sizeText(rows[index].sizeBytes, QLocale()));
    }
}
