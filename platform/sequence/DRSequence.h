#pragma once

#include "platform/sequence/DRLocalizationAliases.h"
#include "platform/sequence/DRSequenceParameters.h"
#include "platform/sequence/DRSequenceStep.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

class DRAnalytics;

/// An ordered set of steps in groups, one of them current. Knows nothing of windows: a frame renders it and forwards
/// the buttons. Main thread only.
class DRSequence : public QObject {
    Q_OBJECT

public:
    /// How the sequence ended.
    enum class Ending { Cancelled, Completed };
    Q_ENUM(Ending)

    struct StepGroup {
        int identifier = 0;
        QString title;
        std::vector<std::unique_ptr<DRSequenceStep>> steps;
    };

    explicit DRSequence(DRAnalytics& analytics);
    ~DRSequence() override;

    void addStepGroupWithIdentifier(int identifier, const QString& title);

    /// Adds a step at the end of the group, which must have been added. The sequence owns it.
    void pushStep(std::unique_ptr<DRSequenceStep> step, int toStepGroupWithIdentifier);

    [[nodiscard]] const std::vector<StepGroup>& stepGroups() const { return m_stepGroups; }

    /// The page that is shown; null before `start` and after the end.
    [[nodiscard]] DRSequenceStep* currentStep() const { return m_currentStep; }

    /// The group of the current step; -1 when there is none.
    [[nodiscard]] int currentStepGroup() const;

    /// Whether what the group was to do has failed; the base knows no failures.
    [[nodiscard]] virtual bool hasStepGroupFailed(int identifier) const;

    /// Shows the first step of the first group.
    void start();

    /// Shows the step, moving forward when it stands after the current one in the order of groups and steps. False,
    /// with nothing done, when the step is null or not in that group.
    bool gotoStep(DRSequenceStep* step, int inStepGroupWithIdentifier);

    /// Next: asks the current step; when that leaves it to the sequence, shows the step after it, or at the last one or
    /// a closing page ends the sequence as completed. Steps call it too, whatever their state mask; called by a step
    /// that is about to appear, it runs once that has appeared.
    void next();

    /// Cancel: asks the current step; when that leaves it to the sequence, ends it as cancelled.
    void cancel();

    /// The user closed the window: ends the sequence without asking the current step, as completed on a closing page and
    /// as cancelled elsewhere. Does nothing when the sequence is not running.
    void abandon();

    /// The frame's buttons: `next` and `cancel`, but nothing while the current step's state mask disables the button.
    void pressNext();
    void pressCancel();

    /// The values that all steps see.
    [[nodiscard]] DRSequenceParameters& parameters() { return m_parameters; }
    [[nodiscard]] const DRSequenceParameters& parameters() const { return m_parameters; }

    /// Labels of the frame's buttons that the sequence has set.
    [[nodiscard]] DRLocalizationAliases& localizations() { return m_localizations; }

    /// The identifier of the text that a button shows now: the current step's alias for the key, else the sequence's,
    /// else the key itself.
    [[nodiscard]] QString resolvedLocalizationKey(const QString& localizationKey) const;

    /// The key that presses Next, "\r" for Return; empty for none.
    [[nodiscard]] const QString& nextKeyEquivalent() const { return m_nextKeyEquivalent; }

    /// Brings labels and keys in line with the current step's state; runs by itself whenever that changes, before
    /// `uiUpdated`.
    virtual void updateUI();

Q_SIGNALS:
    void currentStepChanged();
    void uiUpdated();
    void ended(DRSequence::Ending ending);

protected:
    /// Report the end to the usage events. The base reports nothing.
    virtual void cancelToAnalytics();
    virtual void completeToAnalytics();

    /// The path of a page view made from a step's components.
    [[nodiscard]] virtual QStringList analyticsPageViewComponentsForComponents(const QStringList& components) const;

    void setNextKeyEquivalent(const QString& key) { m_nextKeyEquivalent = key; }
    [[nodiscard]] DRAnalytics& analytics() const { return m_analytics; }

private:
    /// Where a step stands; none for a step of another sequence.
    struct Place {
        int groupIdentifier = -1;
        std::size_t position = 0; ///< in the order of groups and steps, over all groups
    };
    [[nodiscard]] std::optional<Place> placeOf(const DRSequenceStep* step) const;
    [[nodiscard]] DRSequenceStep* stepAfter(const DRSequenceStep& step) const;
    [[nodiscard]] bool isOnClosingPage() const;

    void show(DRSequenceStep* step, DRSequenceDirection direction);
    void end(Ending ending);
    void refreshUI();

    DRAnalytics& m_analytics;
    std::vector<StepGroup> m_stepGroups;
    DRSequenceStep* m_currentStep = nullptr;
    bool m_isStepAboutToAppear = false;
    bool m_isNextPending = false;
    DRSequenceParameters m_parameters;
    DRLocalizationAliases m_localizations;
    QString m_nextKeyEquivalent;
};
