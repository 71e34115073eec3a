#pragma once

#include "app/gui/DRSleepInhibitor.h"
#include "platform/ui/DRSequenceWindow.h"

#include <QPointer>

class DRMGSequence;
class DRMGSequenceStepTransfer;
class DRMigrateStartup;
class QMessageBox;

/// The wizard's window, and what the program around the wizard does for it: choosing folders, asking questions, opening
/// addresses and folders, keeping the computer awake while content moves.
class DRMigrateWizardWindow final : public DRSequenceWindow {
    Q_OBJECT

public:
    /// Both outlive the window.
    DRMigrateWizardWindow(DRMGSequence& migration, DRMigrateStartup& startup);
    ~DRMigrateWizardWindow() override;

    /// Looks for backups in this folder from now on.
    void useBackupsFolder(const QString& folder);

    /// Uses the phone in this folder from now on; says so when there is none.
    void usePhone(const QString& folder);

    /// Tells that this folder is no phone.
    void tellNoPhone(const QString& folder);

private:
    [[nodiscard]] QWidget* makePage(DRSequenceStep& step);
    [[nodiscard]] QString text(const QString& identifier) const;
    [[nodiscard]] QIcon alertIcon() const;
    [[nodiscard]] bool isTransferRunning() const;
    [[nodiscard]] bool mayLeave();
    void connectMigration();
    void chooseFolder(const QString& title, const QString& start, void (DRMigrateWizardWindow::*use)(const QString&));
    void askWhetherToRepeat();
    void showPhoneBackups();
    void keepAwakeWhileRunning();

    DRMGSequence& m_migration;
    DRMigrateStartup& m_startup;
    DRMGSequenceStepTransfer* m_transfer;
    DRSleepInhibitor m_sleepInhibitor;
    bool m_isStopWanted = false; ///< the person wants the transfer to stop
    QPointer<QMessageBox> m_closeQuestion;
    QPointer<QMessageBox> m_repeatQuestion;
};
