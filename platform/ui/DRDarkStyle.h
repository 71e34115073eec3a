#pragma once

#include <QProxyStyle>

/// The Fusion style with flat buttons, boxes and bars, which show the palette's colours as they are, and a clear ring
/// around what has the keyboard's focus.
class DRDarkStyle : public QProxyStyle {
    Q_OBJECT

public:
    DRDarkStyle();

    /// Gives the whole program this style and the dark palette, whatever the desktop has. To be called before the first
    /// widget is made.
    static void applyToApplication();

    int
    styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const override;
    void drawPrimitive(PrimitiveElement element,
                       const QStyleOption* option,
                       QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element,
                     const QStyleOption* option,
                     QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control,
                            const QStyleOptionComplex* option,
                            QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control,
                                       const QStyleOptionComplex* option,
                                       SubControl part,
                                       const QWidget* widget) const override;
    [[nodiscard]] QRect
    subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type,
                                         const QStyleOption* option,
                                         const QSize& contents,
                                         const QWidget* widget) const override;
    [[nodiscard]] QPixmap
    generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap, const QStyleOption* option) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};
