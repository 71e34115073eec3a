#include "wizard/pages/DRMGPhoneIncompatiblePage.h"

#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

DRMGPhoneIncompatiblePage::DRMGPhoneIncompatiblePage(DRMGSequenceStepPhoneIncompatible& step,
                                                     const DRMGPageTools& tools)
    : DRMGPage(step, tools), m_step(step), m_body(makeHtmlView())
{
    DRIconLabel* const picture = makePicture();
    picture->setIconName(u"tarvex_alert"_s);
    QHBoxLayout* const row = makePictureRow(picture);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_body, 1, Qt::AlignTop);
    setLayout(row);
}

void DRMGPhoneIncompatiblePage::render()
{
    showHtml(*m_body, m_step.bodyHtml());
}
