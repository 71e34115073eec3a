#pragma once

#include "platform/sequence/DRSequence.h"
#include "wizard/DRMGContext.h"

#include <functional>
#include <memory>

class DRMGRestoreStepChoose;
class DRMGRestoreStepOutcome;
class DRMGRestoreStepPutBack;

/// Putting a phone's apps back as a sequence of three steps: choose a phone backup, put it back, see what came of it.
class DRMGRestoreSequence final : public DRSequence {
    Q_OBJECT

public:
    struct Backups {
        QString folder;    ///< in which this computer keeps backups of phones
        QString preferred; ///< the folder of the one that is selected first; empty for the newest that can be put back
        std::function<bool()> isWorkingFolderInUse = {}; ///< still, by a transfer that has ended; unset for never
    };

    /// Makes the sequence with all its steps. What `context` refers to outlives it.
    DRMGRestoreSequence(const DRMGContext& context, const Backups& backups);
    ~DRMGRestoreSequence() override;

    [[nodiscard]] DRMGRestoreStepChoose& choose() const { return *m_choose; }
    [[nodiscard]] DRMGRestoreStepPutBack& putBack() const { return *m_putBack; }
    [[nodiscard]] DRMGRestoreStepOutcome& outcome() const { return *m_outcome; }

    /// "Put back" has when not everything is back.
    [[nodiscard]] bool hasStepGroupFailed(int identifier) const override;

    void updateUI() override;

    /// What the steps work with; holds as long as the sequence.
    [[nodiscard]] const DRMGContext& context() const { return m_context; }

protected:
    [[nodiscard]] QStringList analyticsPageViewComponentsForComponents(const QStringList& components) const override;

private:
    template <typename Step> Step* push(std::unique_ptr<Step> step, int group, const QString& title);

    DRMGContext m_context;
    DRMGRestoreStepChoose* m_choose = nullptr;
    DRMGRestoreStepPutBack* m_putBack = nullptr;
    DRMGRestoreStepOutcome* m_outcome = nullptr;
};
