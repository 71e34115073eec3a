#include "wizard/pages/DRMGWelcomePage.h"

#include "model/backup_entry/DRMigrateServices.h"
#include "platform/core/DRLog.h"
#include "platform/device/DRDCDeviceController.h"
#include "platform/ui/DRElidedLabel.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRPanel.h"

#include <QDir>
#include <QHBoxLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int kHangingIndent = 10; ///< in points: of the text's lines below its number

} // namespace

DRMGWelcomePage::DRMGWelcomePage(DRMGSequenceStepWelcome& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_body(makeHtmlView()),
      m_firstStep(makeHtmlView(Tooltips::OfLinks)),
      m_secondStep(makeHtmlView(Tooltips::OfLinks)),
      m_backupsFolder(new DRElidedLabel(this)),
      m_phone(new DRElidedLabel(this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addWidget(m_body);
    column->addWidget(makePanel(m_firstStep, makeButton(u"wizard_choose_backups_folder"_s, tools.chooseBackupsFolder),
                                m_backupsFolder));
    column->addWidget(makePanel(m_secondStep, makeButton(u"wizard_choose_phone"_s, tools.choosePhone), m_phone));
    column->addStretch(1);
    if (auto* const button = makeButton(u"wizard_show_phone_backups"_s, tools.showPhoneBackups)) {
        column->addWidget(button, 0, Qt::AlignLeading);
    }
}

QWidget* DRMGWelcomePage::makePanel(DRHtmlTextView* html, QPushButton* button, DRElidedLabel* choice)
{
    auto* const panel = new DRPanel(this);
    auto* const column = new QVBoxLayout(panel);
    column->setContentsMargins(largeGap(), smallGap() * 2, largeGap(), smallGap() * 2);
    column->setSpacing(smallGap() * 3 / 2);
    column->addWidget(html);
    choice->setForegroundRole(QPalette::PlaceholderText);
    auto* const row = new QHBoxLayout;
    row->setSpacing(smallGap() * 2);
    row->addSpacing(kHangingIndent); // a margin would not change sides in right-to-left languages
    if (button != nullptr) {
        row->addWidget(button);
    }
    row->addWidget(choice, 1);
    column->addLayout(row);
    return panel;
}

void DRMGWelcomePage::render()
{
    const DRMGContext& context = tools().context;
    const DRDCDevicePointer phone = context.services.deviceController.activeDevice();
    showHtml(*m_body, m_step.bodyHtml());
    showHtml(*m_firstStep, m_step.firstStepHtml());
    showHtml(*m_secondStep, m_step.secondStepHtml());
    m_backupsFolder->setWholeText(withoutControlCharacters(QDir::toNativeSeparators(context.backupsFolder)));
    m_phone->setWholeText(phone ? withoutControlCharacters(phone->marketingName()) : QString());
}
