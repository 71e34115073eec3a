#pragma once

#include <QSvgRenderer>
#include <QWidget>

#include <memory>

class DRTimer;
class DRTimerSource;

/// A picture that moves while a transfer runs. Its image is a strip of frames, each 110 points wide, one behind the
/// other; it is drawn from vectors, sharp at any size and density. Decoration for screen readers.
class DRMigrateTransmisionAnimation final : public QWidget {
    Q_OBJECT

public:
    static constexpr double kFrameWidth = 110;

    /// Stands still, without image. The timers must outlive the animation.
    explicit DRMigrateTransmisionAnimation(DRTimerSource& timers, QWidget* parent = nullptr);
    ~DRMigrateTransmisionAnimation() override;

    /// The offset of the frame behind the one at `offset`: the first again behind the last whole one. In points.
    [[nodiscard]] static double offsetBehind(double offset, double imageWidth);

    /// Loads the strip, an SVG. False, and nothing to draw, when it is none.
    bool setImage(const QString& path);

    /// Moves from the present frame on. Where the user has switched animations off the picture stands still.
    void startAnimating();
    void stopAnimating();

    /// One step, as the timer takes it.
    void animate();

    /// Where in the strip the present frame starts, in points.
    [[nodiscard]] double offset() const { return m_offset; }

    /// One frame.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DRTimerSource& m_timers;
    std::unique_ptr<DRTimer> m_animationTimer;
    QSvgRenderer m_image;
    double m_offset = 0;
};
