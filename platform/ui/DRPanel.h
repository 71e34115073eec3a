#pragma once

#include <QWidget>

/// A sunken ground with round corners, for parts of a page that belong together.
class DRPanel final : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};
