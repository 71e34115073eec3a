#include "platform/sequence/DRSequence.h"

#include "platform/analytics/DRAnalytics.h"

#include <algorithm>
#include <utility>

DRSequence::DRSequence(DRAnalytics& analytics) : m_analytics(analytics) {}

DRSequence::~DRSequence() = default;

void DRSequence::addStepGroupWithIdentifier(int identifier, const QString& title)
{
    m_stepGroups.push_back({.identifier = identifier, .title = title, .steps = {}});
}

void DRSequence::pushStep(std::unique_ptr<DRSequenceStep> step, int toStepGroupWithIdentifier)
{
    const auto group = std::ranges::find(m_stepGroups, toStepGroupWithIdentifier, &StepGroup::identifier);
    Q_ASSERT(group != m_stepGroups.end());
    DRSequenceStep* const added = step.get();
    added->m_sequence = this;
    connect(added, &DRSequenceStep::stateMaskChanged, this, [this, added] {
        if (added == m_currentStep) {
            refreshUI();
        }
    });
    group->steps.push_back(std::move(step));
}

bool DRSequence::hasStepGroupFailed(int) const
{
    return false;
}

int DRSequence::currentStepGroup() const
{
    const auto place = placeOf(m_currentStep);
    return place ? place->groupIdentifier : -1;
}

void DRSequence::start()
{
    const auto group = std::ranges::find_if(m_stepGroups, [](const StepGroup& one) { return !one.steps.empty(); });
    if (group != m_stepGroups.end()) {
        show(group->steps.front().get(), DRSequenceDirection::Forward);
    }
}

bool DRSequence::gotoStep(DRSequenceStep* step, int inStepGroupWithIdentifier)
{
    const auto place = placeOf(step);
    if (!place || place->groupIdentifier != inStepGroupWithIdentifier) {
        return false;
    }
    const auto current = placeOf(m_currentStep);
    const bool isBefore = current && place->position < current->position;
    show(step, isBefore ? DRSequenceDirection::Backward : DRSequenceDirection::Forward);
    return true;
}

void DRSequence::next()
{
    if (m_isStepAboutToAppear) {
        m_isNextPending = true;
        return;
    }
    if (m_currentStep == nullptr || !m_currentStep->sequenceShouldChangeToNextStep()) {
        return;
    }
    DRSequenceStep* const following = isOnClosingPage() ? nullptr : stepAfter(*m_currentStep);
    if (following == nullptr) {
        end(Ending::Completed);
        return;
    }
    show(following, DRSequenceDirection::Forward);
}

void DRSequence::cancel()
{
    if (m_currentStep != nullptr && m_currentStep->sequenceShouldCancel()) {
        end(Ending::Cancelled);
    }
}

void DRSequence::abandon()
{
    if (m_currentStep != nullptr) {
        end(isOnClosingPage() ? Ending::Completed : Ending::Cancelled);
    }
}

void DRSequence::pressNext()
{
    if (m_currentStep != nullptr && (m_currentStep->stateMask() & DRSequenceStep::kStateNextEnabled) != 0) {
        next();
    }
}

void DRSequence::pressCancel()
{
    if (m_currentStep != nullptr && (m_currentStep->stateMask() & DRSequenceStep::kStateCancelEnabled) != 0) {
        cancel();
    }
}

QString DRSequence::resolvedLocalizationKey(const QString& localizationKey) const
{
    if (m_currentStep != nullptr && std::as_const(*m_currentStep).localizations().contains(localizationKey)) {
        return m_currentStep->localizations().resolved(localizationKey);
    }
    return m_localizations.resolved(localizationKey);
}

void DRSequence::updateUI() {}

void DRSequence::cancelToAnalytics() {}

void DRSequence::completeToAnalytics() {}

QStringList DRSequence::analyticsPageViewComponentsForComponents(const QStringList& components) const
{
    return components;
}

std::optional<DRSequence::Place> DRSequence::placeOf(const DRSequenceStep* step) const
{
    std::size_t position = 0;
    for (const StepGroup& group : m_stepGroups) {
        for (const auto& candidate : group.steps) {
            if (candidate.get() == step) {
                return Place{.groupIdentifier = group.identifier, .position = position};
            }
            ++position;
        }
    }
    return std::nullopt;
}

DRSequenceStep* DRSequence::stepAfter(const DRSequenceStep& step) const
{
    bool isPassed = false;
    for (const StepGroup& group : m_stepGroups) {
        for (const auto& candidate : group.steps) {
            if (isPassed) {
                return candidate.get();
            }
            isPassed = candidate.get() == &step;
        }
    }
    return nullptr;
}

bool DRSequence::isOnClosingPage() const
{
    return m_currentStep != nullptr && (m_currentStep->stateMask() & DRSequenceStep::kStateClosing) != 0;
}

void DRSequence::show(DRSequenceStep* step, DRSequenceDirection direction)
{
    if (m_currentStep != nullptr) {
        m_currentStep->stepWillDisappear();
    }
    m_isStepAboutToAppear = true;
    step->stepWillAppearInDirection(direction);
    m_isStepAboutToAppear = false;

    m_currentStep = step;
    Q_EMIT currentStepChanged();
    m_analytics.trackPageView(analyticsPageViewComponentsForComponents(step->analyticsPageViewComponents()));
    step->stepDidAppearInDirection(direction);
    refreshUI();
    if (std::exchange(m_isNextPending, false)) {
        next();
    }
}

void DRSequence::end(Ending ending)
{
    m_currentStep->stepWillDisappear();
    m_currentStep = nullptr;
    Q_EMIT currentStepChanged();
    if (ending == Ending::Cancelled) {
        cancelToAnalytics();
    } else {
        completeToAnalytics();
    }
    Q_EMIT ended(ending);
}

void DRSequence::refreshUI()
{
    updateUI();
    Q_EMIT uiUpdated();
}
