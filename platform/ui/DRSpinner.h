#pragma once

#include <QWidget>

#include <chrono>
#include <memory>

class DRTimer;
class DRTimerSource;

/// A turning ring that says "working". Turns while it is visible; stands still where the user has switched animations
/// off. Its colour is the palette's link colour. A screen reader knows it by the accessible name that its owner sets.
class DRSpinner : public QWidget {
    Q_OBJECT

public:
    static constexpr int kStepsPerTurn = 24;
    static constexpr std::chrono::milliseconds kStepInterval{40};

    /// The timer source must outlive the spinner.
    explicit DRSpinner(DRTimerSource& timers, QWidget* parent = nullptr);
    ~DRSpinner() override;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void startOrStop();
    void turn();

    DRTimerSource& m_timers;
    std::unique_ptr<DRTimer> m_timer;
    int m_step = 0; ///< how far the ring has turned, below kStepsPerTurn
};
