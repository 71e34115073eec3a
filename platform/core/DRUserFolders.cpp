#include "platform/core/DRUserFolders.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// The path with the links in what exists of it resolved: databases below it are opened without following any.
QString resolved(const QString& path)
{
    const QFileInfo info(path);
    QString canonical = info.canonicalFilePath();
    if (!canonical.isEmpty() || info.isRoot()) {
        return canonical;
    }
    return QDir(resolved(info.path())).filePath(info.fileName());
}

QString baseFolder(const char* variable, const QString& belowHome)
{
    const QString value = qEnvironmentVariable(variable);
    return resolved(QDir::isAbsolutePath(value) ? QDir::cleanPath(value) : QDir::homePath() + belowHome);
}

} // namespace

DRUserFolders DRUserFolders::ofCurrentUser()
{
    const QString applicationSupport = baseFolder("XDG_DATA_HOME", u"/.local/share"_s);
    return {.applicationSupport = applicationSupport,
            .data = applicationSupport + u"/phone-migrate"_s,
            .temporary = baseFolder("XDG_CACHE_HOME", u"/.cache"_s) + u"/phone-migrate"_s,
            .state = baseFolder("XDG_STATE_HOME", u"/.local/state"_s) + u"/phone-migrate"_s,
            .music = QDir::homePath() + u"/Music"_s};
}
