#pragma once

#include <QWidget>

/// The mark before the title of a step group: a tick when the group is done, an exclamation mark when it failed, else its
/// number. Grows with the font. Says nothing to a screen reader; the title does.
class DRStepGroupMark : public QWidget {
    Q_OBJECT

public:
    enum class State { Done, Failed, Current, ToCome };

    /// `number` is counted from 1.
    explicit DRStepGroupMark(int number, QWidget* parent = nullptr);

    void setState(State state);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintText(QPainter& painter, const QRectF& circle) const;

    int m_number;
    State m_state = State::ToCome;
};
