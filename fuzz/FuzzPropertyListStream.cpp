// The reader of large property lists: taking every value and passing over every value come to an end, within the limits, and
// what can be taken whole can be passed over, too.

#include "fuzz/DRFuzzFolder.h"
#include "fuzz/FuzzTarget.h"
#include "platform/media_library/DRPropertyListStream.h"

using namespace Qt::StringLiterals;

namespace {

void takeDictionary(DRPropertyListStream& stream, int depth);

void takeArray(DRPropertyListStream& stream, int depth);

void takeValue(DRPropertyListStream& stream, int depth)
{
    require(depth <= DRPropertyListStream::kMaximumDepth, "nesting is limited");
    if (stream.enterDictionary()) {
        takeDictionary(stream, depth + 1);
        return;
    }
    if (stream.enterArray()) {
        takeArray(stream, depth + 1);
        return;
    }
    require(stream.text().size() <= DRPropertyListStream::kMaximumValueBytes, "values are limited");
}

void takeDictionary(DRPropertyListStream& stream, int depth)
{
    while (stream.nextKey()) {
        takeValue(stream, depth);
    }
}

void takeArray(DRPropertyListStream& stream, int depth)
{
    while (stream.nextItem()) {
        takeValue(stream, depth);
    }
}

bool isReadToItsEnd(const QString& path, void (*readRoot)(DRPropertyListStream& stream))
{
    DRPropertyListStream stream(DRFileDescriptor::openRegularFile(path));
    if (stream.enterRoot()) {
        readRoot(stream);
    }
    const bool isWhole = stream.problem().isNull() && stream.finish();
    require(isWhole == stream.problem().isNull(), "a list that is not read to its end has a problem");
    return isWhole;
}

/// Takes and passes over the values of one file.
void readBothWays(const QString& path)
{
    const bool canBeTaken = isReadToItsEnd(path, [](DRPropertyListStream& stream) { takeDictionary(stream, 1); });
    const bool canBePassed = isReadToItsEnd(path, [](DRPropertyListStream& stream) {
        while (stream.nextKey()) {
        }
    });
    require(canBePassed || !canBeTaken, "what can be taken can be passed over");
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    const DRFuzzFolder folder;
    readBothWays(folder.write(u"Library.xml"_s, bytes));
    if (const QByteArray stretched = stretchedIfShort(bytes); !stretched.isEmpty()) {
        readBothWays(folder.write(u"Stretched.xml"_s, "<plist><dict>" + stretched));
    }
}
