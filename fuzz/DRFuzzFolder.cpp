#include "fuzz/DRFuzzFolder.h"

#include "fuzz/FuzzTarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

DRFuzzFolder::DRFuzzFolder()
{
    require(m_folder.isValid(), "a temporary folder can be made");
}

QString DRFuzzFolder::write(const QString& name, QByteArrayView bytes) const
{
    QFile file(path(name));
    require(QDir().mkpath(QFileInfo(file.fileName()).path()) && file.open(QIODevice::WriteOnly) &&
                file.write(bytes.data(), bytes.size()) == bytes.size(),
            "a temporary file can be written");
    return file.fileName();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "a file can be read back");
    return file.readAll();
}
