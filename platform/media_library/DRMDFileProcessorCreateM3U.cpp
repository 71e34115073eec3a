#include "platform/media_library/DRMDFileProcessorCreateM3U.h"

#include "platform/core/DRUtf8.h"
#include "platform/device/DRDCFile.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString metadataText(const DRDCFile& file, const char* key)
{
    return file.metadataForKey(QLatin1StringView(key)).toString();
}

/// The text on one line.
QString oneLine(QString text)
{
    const auto isControl = [](QChar character) {
        const auto category = character.category();
        return category == QChar::Other_Control || category == QChar::Separator_Line ||
               category == QChar::Separator_Paragraph;
    };
    std::ranges::replace_if(text, isControl, QChar(u' '));
    return text.simplified();
}

/// "Artist - Title", as much of it as is known.
QString nameOf(const DRDCFile& song)
{
    const QString title = oneLine(metadataText(song, DRDCFile::kTitle));
    const QString artist = oneLine(metadataText(song, DRDCFile::kArtist));
    const QString known = title.isEmpty() ? oneLine(song.displayName()) : title;
    return artist.isEmpty() ? known : artist + u" - "_s + known;
}

/// Rounded to whole seconds; -1, as players expect it, when unknown.
qint64 secondsOf(const DRDCFile& song)
{
    constexpr qint64 kMillisecondsPerSecond = 1000;
    const qint64 milliseconds = song.metadataForKey(QLatin1StringView(DRDCFile::kDuration)).toLongLong();
    return milliseconds <= 0 ? -1
                             : milliseconds / kMillisecondsPerSecond + (milliseconds % kMillisecondsPerSecond) / 500;
}

/// How the playlist's folder names a place; both are relative to the storage.
QString relativePlace(const QString& playlistPath, const QString& place)
{
    const QDir folder(u'/' + playlistPath.section(u'/', 0, -2));
    const QString relative = folder.relativeFilePath(u'/' + place);
    return relative.startsWith(u'#') ? u"./"_s + relative : relative; // or players take it for a comment
}

} // namespace

std::shared_ptr<const DRMDFileProcessorCreateM3U> DRMDFileProcessorCreateM3U::fileProcessor()
{
    return std::make_shared<const DRMDFileProcessorCreateM3U>();
}

std::optional<QByteArray> DRMDFileProcessorCreateM3U::contentForFile(const DRDCFile& file) const
{
    const QString ownPath = metadataText(file, DRDCFile::kTargetPath);
    const auto songs = file.metadataForKey(QLatin1StringView(DRDCFile::kFileReferences)).value<DRDCFileReferences>();
    QString lines;
    for (const DRDCFilePointer& song : songs) {
        const QString place = metadataText(*song, DRDCFile::kPlaceOnPhone);
        if (!place.isEmpty()) {
            lines +=
                u"#EXTINF:%1,"_s.arg(secondsOf(*song)) + nameOf(*song) + u'\n' + relativePlace(ownPath, place) + u'\n';
        }
    }
    if (lines.isEmpty()) {
        return std::nullopt;
    }
    return DRUtf8::encode(u"#EXTM3U\n"_s + lines);
}
