#include "platform/ui/DRStepGroupList.h"

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRAccessibleRole.h"
#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRStepGroupRow.h"

#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

using State = DRStepGroupMark::State;

const QString DRStepGroupList::kNameTextIdentifier = QStringLiteral("dr_sequence_groups");
const QString DRStepGroupList::kDoneTextIdentifier = QStringLiteral("dr_sequence_group_done");
const QString DRStepGroupList::kFailedTextIdentifier = QStringLiteral("dr_sequence_group_failed");
const QString DRStepGroupList::kCurrentTextIdentifier = QStringLiteral("dr_sequence_group_current");
const QString DRStepGroupList::kToComeTextIdentifier = QStringLiteral("dr_sequence_group_to_come");

DRStepGroupList::DRStepGroupList(const DRSequence& sequence, TextLookup text, QWidget* parent)
    : QFrame(parent), m_sequence(sequence), m_text(std::move(text))
{
    DRAccessibleRole::give(*this, QAccessible::Grouping);
    setAccessibleName(m_text(kNameTextIdentifier));
    QPalette sidePalette = palette();
    sidePalette.setColor(QPalette::Window, QColor(DRDarkPalette::kSide));
    setPalette(sidePalette);
    setAutoFillBackground(true);
    addRows();
    markCurrentGroup();
}

void DRStepGroupList::addRows()
{
    const int line = fontMetrics().height();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(line * 3 / 2, line * 2, line * 2, line * 2);
    column->setSpacing(line);
    for (const DRSequence::StepGroup& group : m_sequence.stepGroups()) {
        if (group.steps.empty()) {
            continue;
        }
        auto* const row = new DRStepGroupRow(static_cast<int>(m_rows.size()) + 1, group.title, this);
        column->addWidget(row);
        m_rows.push_back({.groupIdentifier = group.identifier, .widget = row});
    }
    column->addStretch(1);
}

void DRStepGroupList::markCurrentGroup()
{
    const auto current = std::ranges::find(m_rows, m_sequence.currentStepGroup(), &Row::groupIdentifier);
    const bool isNoneCurrent = current == m_rows.end();
    for (auto row = m_rows.begin(); row != m_rows.end(); ++row) {
        const bool isPast = !isNoneCurrent && row < current;
        const State past = m_sequence.hasStepGroupFailed(row->groupIdentifier) ? State::Failed : State::Done;
        const State later = row == current ? State::Current : State::ToCome;
        show(*row, isPast ? past : later);
    }
}

/// The text of a state for screen readers stands at the state's place.
void DRStepGroupList::show(const Row& row, State state)
{
    const std::array texts{&kDoneTextIdentifier, &kFailedTextIdentifier, &kCurrentTextIdentifier,
                           &kToComeTextIdentifier};
    row.widget->setState(state, m_text(*texts.at(static_cast<std::size_t>(state))));
}
