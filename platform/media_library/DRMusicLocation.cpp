#include "platform/media_library/DRMusicLocation.h"

#include "platform/device/DRDCFileUtils.h"
#include "platform/device/DRMigrateFileKinds.h"

#include <QByteArray>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// "/C:/Users/..." and "/C|/...".
bool isOfWindows(const QString& path)
{
    constexpr qsizetype kDriveLength = 3;
    return path.size() >= kDriveLength && path.at(1).isLetter() && (path.at(2) == u':' || path.at(2) == u'|') &&
           (path.size() == kDriveLength || path.at(kDriveLength) == u'/');
}

} // namespace

QString DRMusicLocation::localPath(const QString& location)
{
    constexpr auto kScheme = "file://"_L1;
    constexpr auto kThisComputer = "localhost"_L1;
    if (!location.startsWith(kScheme, Qt::CaseInsensitive)) {
        return {};
    }
    const qsizetype pathStart = location.indexOf(u'/', kScheme.size());
    const QString host = pathStart < 0 ? QString() : location.sliced(kScheme.size(), pathStart - kScheme.size());
    if (pathStart < 0 || (!host.isEmpty() && host.compare(kThisComputer, Qt::CaseInsensitive) != 0)) {
        return {};
    }
    const QByteArray bytes = QByteArray::fromPercentEncoding(location.sliced(pathStart).toUtf8());
    QString path = QFile::decodeName(bytes);
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1); // some versions of the library's program end the URLs of files so
    }
    return bytes.contains('\0') || isOfWindows(path) || path == u"/" ? QString() : path;
}

quint32 DRMusicLocation::fileKind(const QString& path, Flavour flavour)
{
    using namespace DRMigrateFileKinds;

    const QString extension = DRDCFileUtils::extensionOfName(path.section(u'/', -1));
    const quint32 kind = path.isEmpty() ? kMusic : DRDCFileUtils::fileKindFromFileExtension(extension);
    if (flavour == Flavour::Video) {
        return (kind & kVideos) != 0 ? kind : kFilms;
    }
    const bool isOther = kind == kPlaylist || (kind == kMusic && flavour == Flavour::Spoken);
    return isOther ? 0 : kind;
}
