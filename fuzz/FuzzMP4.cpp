// Videos: taking boxes out in one pass gives what taking them out one by one gives, in memory as in files; a file that is not
// understood stays as it is, and of one that is nothing else changes its length.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"
#include "platform/core/DRFileDescriptor.h"
#include "platform/data/DRMutableAbstractData.h"
#include "platform/media/DRMP4Atom.h"
#include "platform/media/DRVideoBoxes.h"

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using DRVideoBoxes::Outcome;

namespace {

/// Removing one by one reads the file again each time.
constexpr int kMostRemovals = 64;

/// What is left after the first box at the first path is removed again and again, then those at the others; none when that
/// takes too long.
std::optional<QByteArray> removedOneByOne(const QByteArray& bytes, const QStringList& paths)
{
    DRMutableAbstractData data(bytes);
    int removals = 0;
    for (const QString& path : paths) {
        while (const auto file = DRMP4Atom::atomWithAbstractData(data)) {
            const std::vector<DRMP4Atom> atoms = file->allAtomsWithPath(path);
            if (atoms.empty()) {
                break;
            }
            if (++removals > kMostRemovals) {
                return std::nullopt;
            }
            require(atoms.front().removeSelfFromMutableData(data), "a box that was found can be removed");
        }
    }
    return data.bytes();
}

void checkFile(const QByteArray& bytes, const QByteArray& expected, Outcome outcome, const QStringList& paths)
{
    const DRFuzzFolder folder;
    const QString source = folder.write(u"source.mov"_s, bytes);
    require(DRVideoBoxes::wouldRemove(source, paths) == outcome, "looking foretells what removing does");
    {
        const auto target =
            DRFileDescriptor::open(folder.path(u"target.mov"_s), O_RDWR | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
        require(target.isOpen() && DRVideoBoxes::writeWithoutBoxes(source, target, paths) == outcome,
                "a file is treated as bytes in memory are");
    }
    require(contentOf(folder.path(u"target.mov"_s)) == expected, "a file becomes what bytes in memory become");
    require(contentOf(source) == bytes, "the source stays as it is");
}

} // namespace

void fuzzOne(QByteArrayView view)
{
    const QByteArray bytes = view.toByteArray();
    const QStringList paths = DRVideoBoxes::pathsForOldPhones();
    DRMutableAbstractData data(bytes);
    const Outcome outcome = DRVideoBoxes::removeBoxes(data, paths);
    require((outcome == Outcome::Removed) == (data.length() < bytes.size()), "only removing makes a file shorter");
    require(outcome == Outcome::Removed || data.bytes() == bytes, "what is not shortened stays as it is");
    require(outcome != Outcome::TooMany && outcome != Outcome::Failed, "removing in memory has no other end");
    if (outcome == Outcome::Removed) {
        DRMutableAbstractData again(data.bytes());
        require(DRVideoBoxes::removeBoxes(again, paths) == Outcome::NoneFound, "all boxes are gone at once");
    }
    const auto expected = removedOneByOne(bytes, paths);
    require(!expected || *expected == data.bytes(), "one pass does what removing one by one does");
    checkFile(bytes, data.bytes(), outcome, paths);
}
