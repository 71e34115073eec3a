#include "platform/folder_phone/DRMediaPlacement.h"

#include "platform/device/DRDCFile.h"
#include "platform/device/DRMigrateFileKinds.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

using namespace DRMigrateFileKinds;

struct FolderOfKind {
    quint32 kinds;
    QLatin1StringView folder;
};

constexpr std::array kFolders{
    FolderOfKind{kMusic | kPlaylist, "Music"_L1},
    FolderOfKind{kVideos, "Movies"_L1},
    FolderOfKind{kPhotos, "Pictures"_L1},
};

QLatin1StringView folderOfKind(quint32 fileKind)
{
    for (const FolderOfKind& entry : kFolders) {
        if ((fileKind & entry.kinds) != 0) {
            return entry.folder;
        }
    }
    return "Download"_L1;
}

bool isLoneSurrogate(const QString& text, qsizetype index)
{
    const QChar character = text.at(index);
    if (character.isHighSurrogate()) {
        return index + 1 == text.size() || !text.at(index + 1).isLowSurrogate();
    }
    return character.isLowSurrogate() && (index == 0 || !text.at(index - 1).isHighSurrogate());
}

QString withoutUnfitCharacters(QString name)
{
    for (qsizetype index = 0; index < name.size(); ++index) {
        const bool isControl = name.at(index).category() == QChar::Other_Control;
        if (isControl || isLoneSurrogate(name, index)) {
            name[index] = u'_';
        }
    }
    return name;
}

/// The longest beginning that takes no more than `bytes` in UTF-8 and cuts no character in two.
QString beginning(QString text, qsizetype bytes)
{
    while (text.toUtf8().size() > bytes) {
        text.chop(text.size() > 1 && text.back().isLowSurrogate() ? 2 : 1);
    }
    return text;
}

/// Name and number joined, the name shortened to leave room for the number and the extension.
QString fittedName(const QString& name, const QString& suffix)
{
    constexpr qsizetype kMaximumExtensionCharacters = 16; // beyond that a dot is part of a sentence
    const qsizetype dot = name.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && name.size() - dot <= kMaximumExtensionCharacters;
    const QString extension = hasExtension ? name.mid(dot) : QString();
    const QString stem = hasExtension ? name.left(dot) : name;
    const qsizetype room = DRMediaPlacement::kMaximumNameBytes - (suffix + extension).toUtf8().size();
    return beginning(stem, room) + suffix + extension;
}

QString safeName(const QString& component)
{
    return component == ".."_L1 ? u"_"_s : fittedName(withoutUnfitCharacters(component), {});
}

QString oneComponent(QString name)
{
    return name.replace(u'/', u'_');
}

/// A text of foreign origin, no file's name so far. A leading dot would hide what it names from the phone's player, and a
/// folder ".nomedia" all that is beside it, too.
QString visibleName(const QString& text)
{
    const QString name = oneComponent(text).trimmed();
    return name.startsWith(u'.') ? u'_' + name.sliced(1) : name;
}

QString folderName(const DRDCFile& file, const char* key)
{
    return visibleName(file.metadataForKey(QLatin1StringView(key)).toString());
}

/// "Artist/Album/"; empty unless both are known.
QString albumFolder(const DRDCFile& file)
{
    const QString artist = folderName(file, DRDCFile::kArtist);
    const QString album = folderName(file, DRDCFile::kAlbum);
    return artist.isEmpty() || album.isEmpty() ? QString() : artist + u'/' + album + u'/';
}

} // namespace

QStringList DRMediaPlacement::safeComponents(const QString& path)
{
    QStringList names;
    const QStringList components = path.split(u'/', Qt::SkipEmptyParts);
    for (const QString& component : components) {
        if (component != "."_L1) {
            names.append(safeName(component));
        }
    }
    return names;
}

bool DRMediaPlacement::isSafePath(const QString& path)
{
    return !path.isEmpty() && safeComponents(path).join(u'/') == path;
}

QString DRMediaPlacement::numberedName(const QString& name, int number)
{
    return fittedName(name, number == 1 ? QString() : u" (%1)"_s.arg(number));
}

QString DRMediaPlacement::defaultPath(const DRDCFile& file)
{
    const quint32 kind = file.fileKind();
    QString name = oneComponent(file.displayName());
    if (kind == kPlaylist) {
        name = visibleName(name);
        name += name.endsWith(".m3u"_L1, Qt::CaseInsensitive) ? ""_L1 : ".m3u"_L1;
    }
    return folderOfKind(kind) + u'/' + (kind == kMusic ? albumFolder(file) : QString()) + name;
}
