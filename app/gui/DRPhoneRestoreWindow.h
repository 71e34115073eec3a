#pragma once

#include "app/gui/DRSleepInhibitor.h"
#include "platform/ui/DRSequenceWindow.h"

#include <QPointer>

#include <functional>

class DRMGRestoreSequence;
class DRMGRestoreStepPutBack;
class DRMigrateStartup;
class QMessageBox;

/// The window in which a phone's apps are put back, and what the program does around that: choosing the phone, asking
/// before it closes, keeping the computer awake.
class DRPhoneRestoreWindow final : public DRSequenceWindow {
    Q_OBJECT

public:
    /// Both outlive the window.
    DRPhoneRestoreWindow(DRMGRestoreSequence& restore, DRMigrateStartup& startup);
    ~DRPhoneRestoreWindow() override;

    [[nodiscard]] DRMGRestoreSequence& sequence() const { return m_restore; }

    /// Uses the phone in this folder from now on; says so when there is none.
    void usePhone(const QString& folder);

    /// Tells that this folder is no phone.
    void tellNoPhone(const QString& folder);

    /// The program was asked from outside to end: closes without a question and calls `end`, once the phone is not
    /// written any more.
    void endWhenPossible(std::function<void()> end);

    /// Whether `endWhenPossible` waits for the phone.
    [[nodiscard]] bool isEnding() const { return static_cast<bool>(m_end); }

private:
    [[nodiscard]] QWidget* makePage(DRSequenceStep& step);
    [[nodiscard]] QString text(const QString& identifier) const;
    [[nodiscard]] bool mayLeave();
    [[nodiscard]] QPointer<QMessageBox> askWhetherToStop();
    void workPhaseChanged();

    DRMGRestoreSequence& m_restore;
    DRMGRestoreStepPutBack& m_putBack;
    DRMigrateStartup& m_startup;
    DRSleepInhibitor m_sleepInhibitor;
    bool m_isStopWanted = false; ///< the person wants to stop before the phone is written
    QPointer<QMessageBox> m_closeQuestion;
    std::function<void()> m_end;
};
