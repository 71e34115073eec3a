#include "app/gui/DRMigrateWizardWindow.h"

#include "app/DRMigrateStartup.h"
#include "app/gui/DRPhoneFolder.h"
#include "app/gui/DRPhoneRestoreWindow.h"
#include "app/gui/DRQuestionBox.h"
#include "wizard/DRMGSequence.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/pages/DRMGPages.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/steps/DRMGSequenceStepTransfer.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

using Answer = DRMGRepeatQuestion::Answer;
using Phase = DRMGSequenceStepTransfer::Phase;

} // namespace

DRMigrateWizardWindow::DRMigrateWizardWindow(DRMGSequence& migration, DRMigrateStartup& startup)
    : DRSequenceWindow(
          migration,
          {.makePage = [this](DRSequenceStep& step) { return makePage(step); },
           .text = [&migration](const QString& identifier) { return migration.context().strings.text(identifier); },
           .mayLeave = [this] { return mayLeave(); },
           .settingsPath = startup.folders().state + u"/window.ini"_s}),
      m_migration(migration),
      m_startup(startup),
      m_transfer(qobject_cast<DRMGSequenceStepTransfer*>(migration.stepForKey(DRMGStepKeys::kTransfer)))
{
    connectMigration();
}

DRMigrateWizardWindow::~DRMigrateWizardWindow() = default;

QWidget* DRMigrateWizardWindow::makePage(DRSequenceStep& step)
{
    const auto chooseBackupsFolder = [this] {
        DRPhoneFolder::choose(*this, text(u"wizard_backups_folder_title"_s), m_migration.context().backupsFolder,
                              [this](const QString& folder) { useBackupsFolder(folder); });
    };
    const auto choosePhone = [this] {
        DRPhoneFolder::choose(*this, text(u"wizard_phone_folder_title"_s), QDir::homePath(),
                              [this](const QString& folder) { usePhone(folder); });
    };
    DRMGPageTools tools{
        .context = m_migration.context(), .chooseBackupsFolder = chooseBackupsFolder, .choosePhone = choosePhone};
    if (!QDir(m_startup.phoneBackupsFolder()).isEmpty()) {
        tools.showPhoneBackups = [this] { showPhoneBackups(); };
    }
    return DRMGPages::pageFor(step, tools);
}

void DRMigrateWizardWindow::connectMigration()
{
    connect(&m_migration, &DRMGSequence::repeatQuestionAsked, this, &DRMigrateWizardWindow::askWhetherToRepeat);
    connect(&m_migration, &DRMGSequence::restoreSelected, this, &DRMigrateWizardWindow::showPhoneBackups);
    connect(&m_migration, &DRMGSequence::openUrlRequested, this, &QDesktopServices::openUrl);
    // The program has no set-up of contacts of its own; people find other ways where they get help.
    connect(&m_migration, &DRMGSequence::contactsSetupSelected, this,
            [this] { QDesktopServices::openUrl(QUrl(m_migration.context().supportAddress)); });
    connect(&m_migration, &DRSequence::currentStepChanged, this, &DRMigrateWizardWindow::keepAwakeWhileRunning);
    connect(m_transfer, &DRMGSequenceStepTransfer::willEnd, m_transfer, &DRMGSequenceStepTransfer::discardWorkingFiles);
    connect(m_transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, this,
            &DRMigrateWizardWindow::keepAwakeWhileRunning);
}

QString DRMigrateWizardWindow::text(const QString& identifier) const
{
    return m_migration.context().strings.text(identifier);
}

void DRMigrateWizardWindow::useBackupsFolder(const QString& folder)
{
    // Somebody may have gone one level too deep, into the backup itself.
    const bool isBackup = QFileInfo::exists(folder + u"/Info.plist"_s);
    m_migration.setBackupsFolder(isBackup ? QFileInfo(folder).path() : folder);
    if (DRSequenceStep* const step = m_migration.currentStep()) {
        Q_EMIT step->contentChanged(); // pages show the folder
    }
}

void DRMigrateWizardWindow::usePhone(const QString& folder)
{
    if (!DRPhoneFolder::use(*this, m_migration.context(), m_startup, folder)) {
        return;
    }
    if (DRSequenceStep* const step = m_migration.currentStep()) {
        Q_EMIT step->contentChanged(); // pages show the phone
    }
}

void DRMigrateWizardWindow::tellNoPhone(const QString& folder)
{
    DRPhoneFolder::tellNoPhone(*this, m_migration.context(), folder);
}

QIcon DRMigrateWizardWindow::alertIcon() const
{
    return QIcon(m_migration.context().resources.pathForResource(u"tarvex_alert"_s));
}

bool DRMigrateWizardWindow::isTransferRunning() const
{
    const Phase phase = m_transfer->progressPhase();
    return m_migration.currentStep() == m_transfer && phase != Phase::NotStarted && phase != Phase::Done;
}

bool DRMigrateWizardWindow::mayLeave()
{
    if (m_migration.currentStep() == m_transfer && m_transfer->progressPhase() == Phase::Done) {
        m_transfer->gotoNext(); // it has ended, which is to be remembered, and only shows that for a moment
    }
    if (!isTransferRunning() || m_isStopWanted) {
        return true;
    }
    if (m_closeQuestion.isNull()) {
        const auto stop = [this] {
            m_isStopWanted = true;
            close();
        };
        m_closeQuestion =
            DRQuestionBox{.icon = alertIcon(),
                          .title = text(u"wizard_close_title"_s),
                          .text = text(u"wizard_close_text"_s),
                          .buttons = {{text(u"wizard_close_stop"_s), stop}, {text(u"wizard_close_continue"_s), [] {}}}}
                .ask(*this);
    }
    return false;
}

void DRMigrateWizardWindow::askWhetherToRepeat()
{
    const auto& question = m_migration.gate().question();
    if (!m_repeatQuestion.isNull()) {
        m_repeatQuestion->hide(); // what it asked has changed
        m_repeatQuestion->deleteLater();
    }
    if (!question) {
        return;
    }
    const auto answerWith = [this](Answer answer) {
        return [this, answer] { m_migration.answerRepeatQuestion(answer); };
    };
    DRQuestionBox box{.icon = alertIcon(), .title = question->title, .text = question->text, .buttons = {}};
    box.buttons.push_back({question->moveAnywayButton, answerWith(Answer::MoveAnyway)});
    if (question->canLeaveOut) {
        box.buttons.push_back({question->leaveOutButton, answerWith(Answer::LeaveOut)});
    }
    box.buttons.push_back({question->stopButton, answerWith(Answer::Stop)});
    m_repeatQuestion = box.ask(*this);
}

void DRMigrateWizardWindow::showPhoneBackups()
{
    if (isTransferRunning() || m_restoreWindow) {
        return;
    }
    m_restore = std::make_unique<DRMGRestoreSequence>(
        m_migration.context(),
        DRMGRestoreSequence::Backups{.folder = m_startup.phoneBackupsFolder(),
                                     .preferred = m_migration.transferResult().phoneBackupPath,
                                     .isWorkingFolderInUse = [this] { return m_transfer->isDiscarding(); }});
    m_restoreWindow = std::make_unique<DRPhoneRestoreWindow>(*m_restore, m_startup);
    m_restore->start();
    m_restoreWindow->show(); // also withdraws the request to quit, if this window is closed already
    close();
}

void DRMigrateWizardWindow::keepAwakeWhileRunning()
{
    if (isTransferRunning()) {
        m_sleepInhibitor.inhibit(text(u"wizard_window_title"_s), text(u"IDD_STEPWIZ_TRANSFER_IDC_HEADER"_s));
        return;
    }
    m_sleepInhibitor.release();
    if (QMessageBox* const question = m_closeQuestion.data()) {
        question->reject(); // there is nothing left to stop
    }
}
