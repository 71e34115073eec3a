#pragma once

#include <QStyle>
#include <QWidget>

/// Where lines begin in the widget's language, even those of a name in another script: labels would align each text as
/// its own script reads.
[[nodiscard]] inline Qt::Alignment leadingAlignment(const QWidget& widget)
{
    return QStyle::visualAlignment(widget.layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter) | Qt::AlignAbsolute;
}
