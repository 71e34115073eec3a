#include "wizard/pages/DRMGRestorePutBackPage.h"

#include "platform/ui/DRIconLabel.h"
#include "platform/ui/DRSpinner.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr QSize kPictureSize{240, 150}; // in points
constexpr int kProgressSteps = 1000;

} // namespace

DRMGRestorePutBackPage::DRMGRestorePutBackPage(DRMGRestoreStepPutBack& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_picture(makePicture(kPictureSize)),
      m_phase(makeLabel()),
      m_progressBar(new QProgressBar(this)),
      m_spinner(new DRSpinner(tools.context.timers, this)),
      m_time(makeLabel()),
      m_note(makeLabel())
{
    m_progressBar->setRange(0, kProgressSteps);
    m_progressBar->setTextVisible(false);
    m_spinner->setFixedSize(m_progressBar->sizeHint().height(), m_progressBar->sizeHint().height());
    m_progressBar->setAccessibleName(m_step.progressName());
    m_picture->setIconName(m_step.imageName());
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(smallGap());
    column->addStretch(1);
    column->addWidget(m_picture, 0, Qt::AlignHCenter);
    column->addStretch(1);
    column->addWidget(m_phase);
    column->addWidget(m_progressBar);
    column->addWidget(m_spinner);
    column->addWidget(m_time);
    column->addSpacing(largeGap());
    column->addWidget(m_note);
    column->addStretch(1);
    connect(&step, &DRMGRestoreStepPutBack::progressChanged, this, &DRMGRestorePutBackPage::renderProgress);
}

void DRMGRestorePutBackPage::render()
{
    m_phase->setText(m_step.phaseText());
    m_note->setText(m_step.noteText());
    renderProgress();
}

void DRMGRestorePutBackPage::renderProgress()
{
    const auto fraction = m_step.progressFraction();
    m_progressBar->setVisible(fraction.has_value());
    m_spinner->setVisible(!fraction.has_value());
    m_progressBar->setValue(static_cast<int>(std::lround(fraction.value_or(0.0) * kProgressSteps)));
    m_time->setText(m_step.timeText());
}
