// The backup's list of files: every path that it answers can be found by its name, and filtering by a prefix gives the paths that
// have it.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"
#include "model/iphone_backup/DRFilePathList.h"

using namespace Qt::StringLiterals;

namespace {

/// As many as are looked up one by one; inputs are small.
constexpr qsizetype kMostLookedUp = 64;

QStringList startingWith(const QStringList& paths, const QString& prefix)
{
    QStringList found;
    for (const QString& path : paths) {
        if (path.startsWith(prefix, Qt::CaseInsensitive)) {
            found.append(path);
        }
    }
    return found;
}

void checkLookUp(const DRFilePathList& list, const QString& path)
{
    const QString name = path.sliced(path.lastIndexOf(u'/') + 1);
    const QString found = list.findInPath({}, name, true);
    require(found.endsWith(name, Qt::CaseInsensitive) && list.filePaths().contains(found),
            "a path of the list is found by its name");
    const qsizetype dot = name.lastIndexOf(u'.');
    require(!list.findInPath({}, dot < 0 ? name : name.first(dot), false).isNull(),
            "a path of the list is found by its name without extension");
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    const DRFuzzFolder folder;
    const QString manifest = folder.write(u"Manifest.mbdb"_s, bytes);
    const DRFilePathList all = DRFilePathList::fileListFromMBDB(manifest);
    const QStringList paths = all.filePaths();
    for (const QString& path : paths.mid(0, kMostLookedUp)) {
        checkLookUp(all, path);
    }
    const QString prefix = paths.isEmpty() ? u"MediaDomain-"_s : paths.last().first(paths.last().size() / 2);
    require(DRFilePathList::fileListFromMBDB(manifest, prefix).filePaths() == startingWith(paths, prefix),
            "reading with a prefix gives the paths that begin with it");
    require(contentOf(manifest) == bytes, "reading leaves the manifest as it is");
}
