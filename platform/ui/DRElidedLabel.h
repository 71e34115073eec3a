#pragma once

#include <QLabel>

/// One line of plain text, such as a path, that loses its middle where it has no room. Tooltip and accessible name keep
/// the whole of it.
class DRElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit DRElidedLabel(QWidget* parent = nullptr);

    /// Shows this instead.
    void setWholeText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void elide();

    QString m_text;
};
