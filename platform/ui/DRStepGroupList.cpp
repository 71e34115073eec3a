#include "platform/ui/DRStepGroupList.h"

#include "platform/sequence/DRSequence.h"
#include "platform/ui/DRAccessibleRole.h"
#include "platform/ui/DRDarkPalette.h"
#include "platform/ui/DRStepGroupRow.h"

#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using State = DRStepGroupMark::State;

const QString DRStepGroupList::kNameTextIdentifier = QStringLiteral("dr_sequence_groups");
const QString DRStepGroupList::kDoneTextIdentifier = QStringLiteral("dr_sequence_group_done");
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
        if (row == current) {
            row->widget->setState(State::Current, m_text(kCurrentTextIdentifier));
            continue;
        }
        const bool isDone = !isNoneCurrent && row < current;
        row->widget->setState(isDone ? State::Done : State::ToCome,
                              m_text(isDone ? kDoneTextIdentifier : kToComeTextIdentifier));
    }
}
