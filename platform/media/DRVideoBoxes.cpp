#include "platform/media/DRVideoBoxes.h"

#include "platform/core/DRFileDescriptor.h"
#include "platform/data/DRMutableAbstractData.h"
#include "platform/media/DRByteSource.h"
#include "platform/media/DRMP4Removal.h"
#include "platform/media/DRMP4Survey.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace {

using DRVideoBoxes::Outcome;

/// Bounds the memory for a file that was made to be awkward, at some tens of megabytes. A long video has a dozen.
constexpr std::size_t kMaximumFindings = 1'000'000;

constexpr quint64 kCopyRangeBytes = quint64{1} << 30;

std::vector<DRMP4Path> readPaths(const QStringList& texts)
{
    std::vector<DRMP4Path> paths;
    for (const QString& text : texts) {
        if (auto path = mp4PathOf(text)) {
            paths.push_back(*std::move(path));
        }
    }
    return paths;
}

Outcome outcomeOf(DRMP4Survey& survey)
{
    switch (survey.run()) {
    case DRMP4Survey::Outcome::Complete:
        break;
    case DRMP4Survey::Outcome::Malformed:
        return Outcome::NotRead;
    case DRMP4Survey::Outcome::TooMuch:
        return Outcome::TooMany;
    }
    return survey.findings().removals.empty() ? Outcome::NoneFound : Outcome::Removed;
}

/// What a disk that does not answer hides is not missing from the video.
Outcome outcomeOf(DRMP4Survey& survey, const DRFileSource& bytes)
{
    const Outcome outcome = outcomeOf(survey);
    return bytes.hasFailed() ? Outcome::Failed : outcome;
}

/// Lets the kernel copy or share what it can. The position it came to.
quint64 shareRange(const DRFileDescriptor& source, const DRByteRange& range, const DRFileDescriptor& target)
{
    auto position = static_cast<off64_t>(range.offset);
    while (static_cast<quint64>(position) < range.end) {
        const quint64 count = std::min(range.end - static_cast<quint64>(position), kCopyRangeBytes);
        if (::copy_file_range(source.number(), &position, target.number(), nullptr, count, 0) <= 0) {
            break;
        }
    }
    return static_cast<quint64>(position);
}

/// Copies to the target's current position, where the kernel cannot go on by reading and writing.
bool copyRange(const DRFileDescriptor& source, const DRByteRange& range, const DRFileDescriptor& target)
{
    DRFileSource bytes(source);
    for (quint64 offset = shareRange(source, range, target); offset < range.end;) {
        const QByteArrayView block = bytes.view(offset, range.end - offset);
        if (block.isEmpty() || !target.writeAll(block.data(), block.size())) {
            return false;
        }
        offset += static_cast<quint64>(block.size());
    }
    return true;
}

bool copyWithoutRanges(const DRFileDescriptor& source,
                       quint64 length,
                       const std::vector<DRByteRange>& removed,
                       const DRFileDescriptor& target)
{
    quint64 offset = 0;
    for (const DRByteRange& range : removed) {
        if (!copyRange(source, {offset, range.offset}, target)) {
            return false;
        }
        offset = range.end;
    }
    return copyRange(source, {offset, length}, target);
}

bool writeAt(const DRFileDescriptor& target, quint64 offset, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::pwrite(target.number(), bytes.data(), static_cast<size_t>(bytes.size()), static_cast<off_t>(offset));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            offset += static_cast<quint64>(count);
            bytes = bytes.sliced(count);
        }
    }
    return true;
}

/// `bytes` are those of `source`.
bool copyWithout(const DRMP4Removal& removal,
                 const DRFileDescriptor& source,
                 DRFileSource& bytes,
                 const DRFileDescriptor& target)
{
    const auto write = [&](quint64 offset, QByteArrayView changed) {
        return writeAt(target, removal.positionAfter(offset), changed);
    };
    return copyWithoutRanges(source, bytes.length(), removal.removedRanges(), target) &&
           removal.writeChanges(bytes, write) && !bytes.hasFailed();
}

} // namespace

QStringList DRVideoBoxes::pathsForOldPhones()
{
    return {QStringLiteral("moov/udta"), QStringLiteral("moov/trak/mdia/minf/stbl/stsd/mp4a/wave/mp4a")};
}

Outcome DRVideoBoxes::removeBoxes(DRMutableAbstractData& data, const QStringList& paths)
{
    DRMemorySource source(data);
    DRMP4Survey survey(source, readPaths(paths), {});
    const Outcome outcome = outcomeOf(survey);
    if (outcome == Outcome::Removed && !DRMP4Removal(survey.takeFindings()).applyTo(data)) {
        return Outcome::Failed;
    }
    return outcome;
}

Outcome DRVideoBoxes::wouldRemove(const QString& source, const QStringList& paths)
{
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(source);
    if (!file.isOpen()) {
        return Outcome::Failed;
    }
    DRFileSource bytes(file);
    DRMP4Survey survey(bytes, readPaths(paths), {.maximumFindings = kMaximumFindings});
    return outcomeOf(survey, bytes);
}

Outcome DRVideoBoxes::writeWithoutBoxes(const QString& source, const DRFileDescriptor& target, const QStringList& paths)
{
    const DRFileDescriptor file = DRFileDescriptor::openRegularFile(source);
    if (!file.isOpen()) {
        return Outcome::Failed;
    }
    DRFileSource bytes(file);
    DRMP4Survey survey(bytes, readPaths(paths), {.maximumFindings = kMaximumFindings});
    const Outcome outcome = outcomeOf(survey, bytes);
    if (outcome == Outcome::Failed) {
        return Outcome::Failed;
    }
    const DRMP4Removal removal(outcome == Outcome::Removed ? survey.takeFindings() : DRMP4Findings{});
    return copyWithout(removal, file, bytes, target) ? outcome : Outcome::Failed;
}
