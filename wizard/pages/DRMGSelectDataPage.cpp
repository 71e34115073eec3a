#include "wizard/pages/DRMGSelectDataPage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"
#include "wizard/widgets/DRMGSelectDataEntry.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

#include <array>

namespace {

// In points.
constexpr QSize kPictureSize{40, 40};
constexpr int kSpinnerSide = 20;

} // namespace

DRMGSelectDataPage::DRMGSelectDataPage(DRMGSequenceStepSelectData& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_body(makeHtmlView()),
      m_iPhoneImage(makePicture(kPictureSize)),
      m_iPhoneName(makeLabel()),
      m_iPhoneBackupInfo(makeHtmlView(Tooltips::OfLinks)),
      m_checkboxes(*this,
                   tools,
                   {.label = [&step](const QString& key) { return step.boxLabel(key); },
                    .stateText = [&step](const DRMGSelectionBox& box) { return step.boxStateText(box); },
                    .setTicked = [&step](const QString& key, bool isTicked) { step.setTicked(key, isTicked); }}),
      m_waitingSpinner(new DRSpinner(tools.context.timers, this)),
      m_status(makeLabel())
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addLayout(makeBackupRow());
    column->addWidget(m_body);
    column->addLayout(makeColumns());
    column->addLayout(makeStatusRow());
    column->addStretch(1);
}

QLayout* DRMGSelectDataPage::makeBackupRow()
{
    QFont nameFont = m_iPhoneName->font();
    nameFont.setBold(true);
    m_iPhoneName->setFont(nameFont);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(smallGap() / 2);
    texts->addWidget(m_iPhoneName);
    texts->addWidget(m_iPhoneBackupInfo);
    auto* const row = new QHBoxLayout;
    row->setSpacing(smallGap() * 2);
    row->addWidget(m_iPhoneImage, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    return row;
}

QLayout* DRMGSelectDataPage::makeColumns()
{
    auto* const grid = new QGridLayout;
    grid->setHorizontalSpacing(largeGap());
    grid->setVerticalSpacing(smallGap() / 2);
    std::array<int, 2> rows{}; // how many stand in each column
    for (const DRMGSelectionCategory& category : DRMGSelection::categories()) {
        const std::size_t column = category.column == DRMGSelectionCategory::Column::Left ? 0 : 1;
        grid->addWidget(m_checkboxes.add(category), rows.at(column)++, static_cast<int>(column));
        grid->setColumnStretch(static_cast<int>(column), 1);
    }
    return grid;
}

QLayout* DRMGSelectDataPage::makeStatusRow()
{
    m_waitingSpinner->setFixedSize(kSpinnerSide, kSpinnerSide);
    m_waitingSpinner->hide();
    m_status->hide();
    auto* const row = new QHBoxLayout;
    row->setSpacing(smallGap());
    row->addWidget(m_waitingSpinner);
    row->addWidget(m_status, 1);
    return row;
}

void DRMGSelectDataPage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
    m_iPhoneImage->setIconName(m_step.imageName());
    m_iPhoneImage->setAccessibleName(m_step.imageText());
    m_iPhoneName->setText(m_step.deviceName());
    showHtml(*m_iPhoneBackupInfo, m_step.backupInfoHtml());
    m_checkboxes.show(m_step.boxes());
    m_status->setText(m_step.statusText());
    m_waitingSpinner->setVisible(m_step.isWaitingForContent());
    m_status->setVisible(!m_step.statusText().isEmpty());
}
