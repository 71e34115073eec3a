#include "wizard/pages/DRMGPhoneIncompatiblePage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kPictureSize{56, 56}; // in points

} // namespace

DRMGPhoneIncompatiblePage::DRMGPhoneIncompatiblePage(DRMGSequenceStepPhoneIncompatible& step,
                                                     const DRMGPageTools& tools)
    : DRMGPage(step, tools), m_step(step), m_body(makeHtmlView())
{
    DRIconLabel* const picture = makePicture(kPictureSize);
    picture->setIconName(u"tarvex_alert"_s);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(largeGap());
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addWidget(m_body, 1, Qt::AlignTop);
}

void DRMGPhoneIncompatiblePage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
}
