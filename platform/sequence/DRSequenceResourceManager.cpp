#include "platform/sequence/DRSequenceResourceManager.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

QString pathInBundle(const QDir& bundle, const QString& name)
{
    if (QFileInfo(bundle.filePath(name)).isFile()) {
        return bundle.filePath(name);
    }
    const QFileInfoList files = bundle.entryInfoList(QDir::Files, QDir::Name);
    const auto found = std::ranges::find(files, name, &QFileInfo::completeBaseName);
    return found == files.end() ? QString() : found->filePath();
}

} // namespace

void DRSequenceResourceManager::registerBundle(const QString& folder)
{
    if (!m_bundles.contains(folder)) {
        m_bundles.prepend(folder);
    }
}

QString DRSequenceResourceManager::pathForResource(const QString& name) const
{
    for (const QString& bundle : m_bundles) {
        QString path = pathInBundle(QDir(bundle), name);
        if (!path.isEmpty()) {
            return path;
        }
    }
    return {};
}
