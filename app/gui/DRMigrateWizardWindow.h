#pragma once

#include "app/gui/DRSleepInhibitor.h"
#include "platform/ui/DRSequenceWindow.h"

#include <QPointer>

#include <memory>

class DRMGRestoreSequence;
class DRMGSequence;
class DRMGSequenceStepTransfer;
class DRMigrateStartup;
class DRPhoneRestoreWindow;
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

    /// Opens the window that puts the phone's apps back, with the phone backup of this window's transfer, if there is one,
    /// selected first, and closes this one.
    void showPhoneBackups();

    /// The window that `showPhoneBackups` has opened, which this one owns; null before.
    [[nodiscard]] DRPhoneRestoreWindow* restoreWindow() const { return m_restoreWindow.get(); }

private:
    [[nodiscard]] QWidget* makePage(DRSequenceStep& step);
    [[nodiscard]] QString text(const QString& identifier) const;
    [[nodiscard]] QIcon alertIcon() const;
    [[nodiscard]] bool isTransferRunning() const;
    [[nodiscard]] bool mayLeave();
    void connectMigration();
    void askWhetherToRepeat();
    void keepAwakeWhileRunning();

    DRMGSequence& m_migration;
    DRMigrateStartup& m_startup;
    DRMGSequenceStepTransfer* m_transfer;
    DRSleepInhibitor m_sleepInhibitor;
    bool m_isStopWanted = false; ///< the person wants the transfer to stop
    QPointer<QMessageBox> m_closeQuestion;
    QPointer<QMessageBox> m_repeatQuestion;
    std::unique_ptr<DRMGRestoreSequence> m_restore;
    std::unique_ptr<DRPhoneRestoreWindow> m_restoreWindow;
};
