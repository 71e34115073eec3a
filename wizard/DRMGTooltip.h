#pragma once

#include <QSize>
#include <QString>

/// What opens over a link of a page.
struct DRMGTooltip {
    QString html;
    QSize size; ///< of the panel, in points
};
