#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QTemporaryDir>

/// A folder for one input, gone with this object. It lies where $TMPDIR says, which scripts/fuzz sets to memory.
class DRFuzzFolder {
public:
    DRFuzzFolder();

    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    /// Writes the file; the process ends when that cannot be done. Answers its path.
    QString write(const QString& name, QByteArrayView bytes) const;

private:
    QTemporaryDir m_folder;
};

/// The file's content; the process ends when it cannot be read.
[[nodiscard]] QByteArray contentOf(const QString& path);
