#pragma once

#include <QSvgRenderer>
#include <QWidget>

class DRSequenceResourceManager;

/// An SVG picture found by its name, drawn as large as the label allows without distorting it and sharp at any density.
/// Decoration, unless its owner sets an accessible name.
class DRIconLabel : public QWidget {
    Q_OBJECT

public:
    /// The resource manager must outlive the label.
    explicit DRIconLabel(const DRSequenceResourceManager& resources, QWidget* parent = nullptr);

    /// Shows the picture with this name, with or without its extension. False, and an empty label, when no bundle holds
    /// one or it is no SVG.
    bool setIconName(const QString& name);

    /// The size that the label asks for, in points; until it is set, the picture's own.
    void setIconSize(const QSize& size);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const DRSequenceResourceManager& m_resources;
    QSvgRenderer m_picture;
    QSize m_iconSize;
};
