#include "platform/device/DRDCFileUtils.h"

#include "platform/device/DRMigrateFileKinds.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

using namespace DRMigrateFileKinds;

struct ExtensionsOfKind {
    quint32 kind;
    QLatin1StringView extensions; ///< lower case, with blanks between
};

/// What iPhones and music libraries hold. "mp4" is a film though it may hold sound alone: the sound has its own "m4a".
constexpr std::array kExtensions{
    ExtensionsOfKind{kPhotos, "jpg jpeg jpe png heic heif gif tif tiff bmp webp dng jp2 mpo"_L1},
    ExtensionsOfKind{kFilms, "mov qt mp4 m4v 3gp 3gpp 3g2 3gp2"_L1},
    ExtensionsOfKind{kOtherVideos, "avi mkv webm wmv asf flv mpg mpeg mpe m2v ts mts m2ts divx ogv"_L1},
    ExtensionsOfKind{kMusic, "mp3 m4a m4b m4p m4r aac wav aif aiff aifc caf amr flac alac ogg oga opus wma mp2 mka"_L1},
    ExtensionsOfKind{kPlaylist, "m3u m3u8 pls"_L1},
};

} // namespace

quint32 DRDCFileUtils::fileKindFromFileExtension(const QString& extension)
{
    for (const ExtensionsOfKind& entry : kExtensions) {
        for (const QLatin1StringView known : entry.extensions.tokenize(u' ')) {
            if (extension.compare(known, Qt::CaseInsensitive) == 0) {
                return entry.kind;
            }
        }
    }
    return 0;
}

QString DRDCFileUtils::extensionOfName(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QString();
}
