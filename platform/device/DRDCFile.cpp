#include "platform/device/DRDCFile.h"

#include "platform/core/DRFileDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

#include <sys/stat.h>

namespace {

quint64 sizeOfRegularFile(const QString& path)
{
    struct stat status {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return 0;
    }
    return static_cast<quint64>(status.st_size);
}

} // namespace

std::shared_ptr<DRDCFile> DRDCFile::fileWithSourcePath(const QString& path)
{
    auto file = std::make_shared<DRDCFile>();
    file->m_sourcePath = path;
    file->m_filesize = sizeOfRegularFile(path);
    return file;
}

void DRDCFile::addFileProcessor(std::shared_ptr<const DRDCFileProcessor> processor)
{
    m_processors.push_back(std::move(processor));
}

const DRDCFileProcessor* DRDCFile::fileProcessor() const
{
    return m_processors.empty() ? nullptr : m_processors.back().get();
}

bool DRDCFile::isValidFile() const
{
    return !m_sourcePath.isEmpty() && DRFileDescriptor::openRegularFile(m_sourcePath).isOpen();
}

QString DRDCFile::displayName() const
{
    const QString name = metadataForKey(QLatin1StringView(kTargetFileName)).toString();
    return name.isEmpty() ? QFileInfo(m_sourcePath).fileName() : name;
}
