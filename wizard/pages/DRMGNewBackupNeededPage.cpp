#include "wizard/pages/DRMGNewBackupNeededPage.h"

#include "platform/core/DRLog.h"
#include "platform/ui/DRElidedLabel.h"
#include "platform/ui/DRHtmlTextView.h"
#include "platform/ui/DRIconLabel.h"

#include <QDir>
#include <QHBoxLayout>
#include <QPushButton>

using namespace Qt::StringLiterals;

DRMGNewBackupNeededPage::DRMGNewBackupNeededPage(DRMGSequenceStepNewBackupNeeded& step, const DRMGPageTools& tools)
    : DRMGPage(step, tools),
      m_step(step),
      m_image(makePicture()),
      m_reason(makeHtmlView()),
      m_note(makeHtmlView()),
      m_backupsFolder(new DRElidedLabel(this))
{
    m_backupsFolder->setForegroundRole(QPalette::PlaceholderText);
    auto* const folder = new QVBoxLayout;
    folder->setSpacing(smallGap());
    folder->addWidget(m_backupsFolder);
    if (auto* const button = makeButton(u"wizard_choose_backups_folder"_s, tools.chooseBackupsFolder)) {
        folder->addWidget(button, 0, Qt::AlignLeading);
    }
    auto* const column = new QVBoxLayout;
    column->setSpacing(largeGap());
    column->addWidget(m_reason);
    column->addWidget(m_note);
    column->addLayout(folder);
    column->addStretch(1);
    QHBoxLayout* const row = makePictureRow(m_image);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(column, 1);
    setLayout(row);
}

void DRMGNewBackupNeededPage::render()
{
    m_image->setIconName(m_step.imageName());
    showHtml(*m_reason, m_step.reasonHtml());
    showHtml(*m_note, m_step.noteHtml());
    const QString folder = withoutControlCharacters(QDir::toNativeSeparators(tools().context.backupsFolder));
    m_backupsFolder->setWholeText(text(u"wizard_looked_in"_s).replace(u"%1"_s, folder));
}
