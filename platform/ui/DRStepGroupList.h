#pragma once

#include "platform/ui/DRStepGroupMark.h"

#include <QFrame>

#include <functional>
#include <vector>

class DRSequence;
class DRStepGroupRow;

/// The step groups of a sequence at the side of its window: those that are done or failed, the current one, those to come. Groups
/// without steps are left out.
class DRStepGroupList : public QFrame {
    Q_OBJECT

public:
    /// Texts for screen readers: the name of the list, and the state of a group.
    static const QString kNameTextIdentifier;
    static const QString kDoneTextIdentifier;
    static const QString kFailedTextIdentifier;
    static const QString kCurrentTextIdentifier;
    static const QString kToComeTextIdentifier;

    using TextLookup = std::function<QString(const QString& identifier)>;

    /// Shows the groups that the sequence has now. The sequence must outlive the list.
    DRStepGroupList(const DRSequence& sequence, TextLookup text, QWidget* parent = nullptr);

    /// Marks the group of the sequence's current step; all are to come when there is none.
    void markCurrentGroup();

private:
    struct Row {
        int groupIdentifier;
        DRStepGroupRow* widget;
    };
    void addRows();
    void show(const Row& row, DRStepGroupMark::State state);

    const DRSequence& m_sequence;
    TextLookup m_text;
    std::vector<Row> m_rows;
};
