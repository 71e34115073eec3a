#pragma once

#include <QDir>
#include <QFile>

/// The file's bytes; null when it cannot be read.
[[nodiscard]] inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QByteArray("").append(file.readAll()) : QByteArray();
}

/// Writes the file, making the folders above it.
[[nodiscard]] inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size();
}
