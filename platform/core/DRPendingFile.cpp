#include "platform/core/DRPendingFile.h"

#include "platform/core/DRLog.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

void DRPendingFile::removeLeftovers(const QString& folder)
{
    const QDir inside(folder);
    for (const QString& name : inside.entryList({u".phone-migrate-??????"_s}, QDir::Files | QDir::Hidden)) {
        ::unlink(nativePath(inside.filePath(name)).constData());
    }
}

DRPendingFile::DRPendingFile(const QString& target)
    : m_target(nativePath(target)),
      m_temporary(m_target.left(m_target.lastIndexOf('/') + 1) + ".phone-migrate-XXXXXX"),
      m_file(m_target.isEmpty() ? -1 : ::mkostemp(m_temporary.data(), O_CLOEXEC))
{
}

DRPendingFile::~DRPendingFile()
{
    if (m_file.isOpen() && !m_isPublished) {
        ::unlink(m_temporary.constData());
    }
}

QString DRPendingFile::temporaryPath() const
{
    return QFile::decodeName(m_temporary);
}

bool DRPendingFile::publish()
{
    m_isPublished = m_file.isOpen() && ::rename(m_temporary.constData(), m_target.constData()) == 0;
    if (!m_isPublished) {
        qCWarning(lcMigrate, "A finished file cannot be put in its place: %s", std::strerror(errno));
    }
    return m_isPublished;
}
