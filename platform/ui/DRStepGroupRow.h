#pragma once

#include "platform/ui/DRStepGroupMark.h"

#include <QString>
#include <QWidget>

class QLabel;

/// One step group at the side of the window: a mark and the group's title.
class DRStepGroupRow : public QWidget {
    Q_OBJECT

public:
    /// `number` stands in the mark, counted from 1.
    DRStepGroupRow(int number, const QString& title, QWidget* parent = nullptr);

    /// `description` says the state to a screen reader, such as "done"; it may be empty.
    void setState(DRStepGroupMark::State state, const QString& description);

protected:
    void changeEvent(QEvent* event) override;

private:
    void updateTitle();

    DRStepGroupMark* m_mark;
    QLabel* m_title;
    DRStepGroupMark::State m_state = DRStepGroupMark::State::ToCome;
};
