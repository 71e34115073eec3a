#pragma once

#include <QDir>
#include <QPixmap>
#include <QString>
#include <QWidget>

/// Saves a picture of the widget as NAME.png in the folder that MIGRATE_SCREENSHOTS names, for people to look at. Does
/// nothing when that is unset. False when the picture cannot be written.
[[nodiscard]] inline bool saveScreenshot(QWidget& widget, const QString& name)
{
    const QString folder = qEnvironmentVariable("MIGRATE_SCREENSHOTS");
    return folder.isEmpty() ||
           (QDir().mkpath(folder) && widget.grab().save(QDir(folder).filePath(name + QStringLiteral(".png"))));
}
