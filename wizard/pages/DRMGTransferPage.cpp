#include "wizard/pages/DRMGTransferPage.h"

#include "platform/sequence/DRSequenceResourceManager.h"
#include "platform/ui/DRHtmlTextView.h"
#include "wizard/widgets/DRMigrateTransmisionAnimation.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kProgressSteps = 1000;
constexpr int kAnimationScale = 2;

} // namespace

DRMGTransferPage::DRMGTransferPage(DRMGSequenceStepTransfer& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_animation(new DRMigrateTransmisionAnimation(tools.context.timers, this)),
      m_phase(makeLabel()),
      m_progressBar(new QProgressBar(this)),
      m_progressText(makeHtmlView()),
      m_note(makeHtmlView())
{
    m_animation->setImage(tools.context.resources.pathForResource(u"migrate_transmission_animation"_s));
    m_animation->setFixedSize(m_animation->sizeHint() * kAnimationScale);
    m_progressBar->setRange(0, kProgressSteps);
    m_progressBar->setTextVisible(false);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(smallGap());
    column->addStretch(1);
    column->addWidget(m_animation, 0, Qt::AlignHCenter);
    column->addStretch(1);
    column->addWidget(m_phase);
    column->addWidget(m_progressBar);
    column->addWidget(m_progressText);
    column->addSpacing(largeGap());
    column->addWidget(m_note);
    column->addStretch(1);
    connect(&step, &DRMGSequenceStepTransfer::progressPhaseChanged, this, &DRMGTransferPage::renderProgress);
    connect(&step, &DRMGSequenceStepTransfer::progressChanged, this, &DRMGTransferPage::renderProgress);
}

void DRMGTransferPage::render()
{
    m_progressBar->setAccessibleName(m_step.progressName());
    m_animation->setAccessibleName(m_step.animationName());
    showHtml(*m_note, m_step.noteHtml());
    renderAnimation();
    renderProgress();
}

void DRMGTransferPage::renderProgress()
{
    m_phase->setText(m_step.phaseText());
    m_progressBar->setValue(static_cast<int>(std::lround(m_step.progressFraction() * kProgressSteps)));
    showHtml(*m_progressText, m_step.progressHtml());
}

void DRMGTransferPage::renderAnimation()
{
    if (m_isAnimating == m_step.isAnimating()) {
        return; // starting it anew would delay its next frame
    }
    m_isAnimating = m_step.isAnimating();
    if (m_isAnimating) {
        m_animation->startAnimating();
    } else {
        m_animation->stopAnimating();
    }
}
