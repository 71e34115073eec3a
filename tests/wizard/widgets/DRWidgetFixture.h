#pragma once

#include "app/gui/DRArtwork.h"
#include "platform/sequence/DRSequenceResourceManager.h"
#include "tests/support/DRTestTimerSource.h"

#include <QImage>
#include <QProxyStyle>
#include <QWidget>

/// Fusion with animations of this length; 0 switches them off.
class DRAnimationStyle final : public QProxyStyle {
public:
    explicit DRAnimationStyle(int milliseconds) : QProxyStyle(QStringLiteral("fusion")), m_milliseconds(milliseconds) {}

    int
    styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration ? m_milliseconds
                                                    : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_milliseconds;
};

/// What the widgets are made of, and their picture.
struct DRWidgetFixture {
    DRWidgetFixture() { resources.registerBundle(DRArtwork::folder()); }

    [[nodiscard]] static QImage pictureOf(QWidget& widget, int density)
    {
        QImage image(widget.size() * density, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(density);
        image.fill(Qt::transparent);
        widget.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    }

    DRSequenceResourceManager resources;
    DRTestTimerSource timers;
    DRAnimationStyle animated{1};
    DRAnimationStyle still{0};
};
