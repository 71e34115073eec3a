#include "wizard/pages/DRMGNewBackupNeededPage.h"

#include "platform/core/DRLog.h"
#include "platform/ui/DRElidedLabel.h"
#include "platform/ui/DRHtmlTextView.h"

#include <QDir>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

DRMGNewBackupNeededPage::DRMGNewBackupNeededPage(DRMGSequenceStepNewBackupNeeded& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_reason(makeHtmlView()),
      m_note(makeHtmlView()),
      m_backupsFolder(new DRElidedLabel(this))
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(largeGap());
    column->addWidget(m_reason);
    column->addWidget(m_note);
    m_backupsFolder->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(m_backupsFolder);
    if (auto* const button = makeButton(u"wizard_choose_backups_folder"_s, tools.chooseBackupsFolder)) {
        column->addWidget(button, 0, Qt::AlignLeading);
    }
    column->addStretch(1);
}

void DRMGNewBackupNeededPage::render()
{
    showHtml(*m_reason, m_step.reasonHtml());
    showHtml(*m_note, m_step.noteHtml());
    m_backupsFolder->setWholeText(withoutControlCharacters(QDir::toNativeSeparators(tools().context.backupsFolder)));
}
