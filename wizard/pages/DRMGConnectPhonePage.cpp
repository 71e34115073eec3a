#include "wizard/pages/DRMGConnectPhonePage.h"

#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr QSize kPictureSize{240, 150};
constexpr int kSpinnerSide = 48;

} // namespace

DRMGConnectPhonePage::DRMGConnectPhonePage(DRMGSequenceStepConnectPhone& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_picture(makePicture(kPictureSize)),
      m_spinner(new DRSpinner(tools.context.timers, this)),
      m_body(makeLabel()),
      m_note(makeLabel())
{
    m_spinner->setFixedSize(kSpinnerSide, kSpinnerSide);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addWidget(m_body);
    column->addWidget(m_note);
    if (auto* const button = makeButton(u"wizard_choose_phone"_s, tools.choosePhone)) {
        column->addWidget(button, 0, Qt::AlignLeading);
    }
    column->addStretch(1);
    column->addWidget(m_picture, 0, Qt::AlignCenter);
    column->addWidget(m_spinner, 0, Qt::AlignCenter);
    column->addStretch(2);
}

void DRMGConnectPhonePage::render()
{
    m_body->setText(m_step.bodyText());
    m_note->setText(m_step.noteText());
    m_picture->setIconName(m_step.imageName());
    m_picture->setAccessibleName(m_step.imageText());
    m_spinner->setAccessibleName(m_step.imageText());
    m_picture->setVisible(!m_step.showsSpinner());
    m_spinner->setVisible(m_step.showsSpinner());
}
