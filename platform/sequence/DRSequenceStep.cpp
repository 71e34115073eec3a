#include "platform/sequence/DRSequenceStep.h"

#include <utility>

DRSequenceStep::DRSequenceStep(QString key) : m_key(std::move(key)) {}

DRSequenceStep::~DRSequenceStep() = default;

void DRSequenceStep::stepWillAppearInDirection(DRSequenceDirection) {}

void DRSequenceStep::stepDidAppearInDirection(DRSequenceDirection) {}

void DRSequenceStep::stepWillDisappear() {}

void DRSequenceStep::setStateMask(int mask)
{
    if (m_stateMask == mask) {
        return;
    }
    m_stateMask = mask;
    Q_EMIT stateMaskChanged();
}
