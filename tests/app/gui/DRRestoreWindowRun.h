#pragma once

#include "app/gui/DRPhoneRestoreWindow.h"
#include "tests/app/gui/DRWizardRun.h"
#include "wizard/restore/DRMGRestoreSequence.h"
#include "wizard/restore/DRMGRestoreStepChoose.h"
#include "wizard/restore/DRMGRestoreStepOutcome.h"
#include "wizard/restore/DRMGRestoreStepPutBack.h"

/// The window that puts a phone's apps back, used as a person uses it.
class DRRestoreWindowRun : public DRWindowRun {
public:
    explicit DRRestoreWindowRun(DRPhoneRestoreWindow& window) : DRWindowRun(window), m_window(window) { show(); }

    [[nodiscard]] DRMGRestoreSequence& sequence() const { return m_window.sequence(); }
    [[nodiscard]] DRPhoneRestoreWindow& window() const { return m_window; }

    [[nodiscard]] QString pageKey() const
    {
        return sequence().currentStep() == nullptr ? QString() : sequence().currentStep()->key();
    }

private:
    DRPhoneRestoreWindow& m_window;
};
