#include "model/packet/DRPacketExtraction.h"

#include "model/packet/DRDiskReserve.h"
#include "model/packet/DRPacketFolder.h"
#include "model/packet/DRPacketIo.h"
#include "model/packet/DRPacketPaths.h"
#include "model/packet/DRTarReader.h"
#include "platform/core/DRLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

enum class Outcome { Done, LeftOut, Failed };

/// Deeper trees would be a burden to whoever removes them.
constexpr std::size_t kDeepestPath = 100;

/// What making a file or folder fails with when the archive's own names are at odds with each other.
constexpr std::array kFaultsOfTheArchive{EEXIST, EISDIR, ELOOP, ENOTDIR};

Outcome failedCall(const char* what)
{
    const int reason = errno;
    if (std::ranges::find(kFaultsOfTheArchive, reason) != kFaultsOfTheArchive.end()) {
        return Outcome::LeftOut;
    }
    qCWarning(lcMigrate, "A packet cannot be expanded: %s: %s", what, std::strerror(reason));
    return Outcome::Failed;
}

bool isPathAllowed(const QByteArray& path, const std::vector<QByteArray>& components)
{
    const bool isNamePossible =
        std::ranges::all_of(components, [](const auto& name) { return name.size() <= NAME_MAX; });
    return path.size() < PATH_MAX && components.size() <= kDeepestPath && isNamePossible &&
           (components.empty() || components.front() != "expandBackup.tar");
}

/// Grows the file from `end` to `newEnd`, which counts in full also where it is a hole: packing will write it out.
bool mayGrow(DRDiskReserve& reserve, quint64 end, quint64 newEnd)
{
    if (newEnd <= end || reserve.allows(newEnd - end)) {
        return true;
    }
    qCWarning(lcMigrate, "A packet cannot be expanded: its content does not fit on the disk");
    return false;
}

Outcome
writeContent(DRTarReader& reader, const DRTarReader::Entry& entry, const DRFileDescriptor& file, DRDiskReserve& reserve)
{
    quint64 end = 0;
    while (const auto piece = reader.nextPiece()) {
        const quint64 pieceEnd = piece->offset + piece->bytes.size();
        if (!mayGrow(reserve, end, pieceEnd)) {
            return Outcome::Failed;
        }
        if (!DRPacketIo::writeAt(file, piece->bytes, piece->offset)) {
            qCWarning(lcMigrate, "A packet cannot be expanded: writing a file: %s", std::strerror(errno));
            return Outcome::Failed;
        }
        end = std::max(end, pieceEnd);
    }
    if (!reader.isContentWhole() || end >= entry.sizeBytes) {
        return Outcome::Done;
    }
    if (!mayGrow(reserve, end, entry.sizeBytes)) {
        return Outcome::Failed;
    }
    const bool hasGrown = ::ftruncate(file.number(), static_cast<off_t>(entry.sizeBytes)) == 0;
    return hasGrown ? Outcome::Done : failedCall("giving a file its size");
}

Outcome extractFile(DRTarReader& reader,
                    const DRTarReader::Entry& entry,
                    const std::vector<QByteArray>& path,
                    DRPacketFolder& folder,
                    DRDiskReserve& reserve)
{
    const DRFileDescriptor file = folder.createFile(path);
    if (!file.isOpen()) {
        return failedCall("making a file");
    }
    const Outcome outcome = writeContent(reader, entry, file, reserve);
    const timespec time{.tv_sec = entry.modificationSeconds, .tv_nsec = 0};
    const std::array times{time, time};
    // A time that the file system cannot keep is no loss: the phone gets the time of the repacked file.
    static_cast<void>(::futimens(file.number(), times.data()));
    return outcome;
}

Outcome
extractEntry(DRTarReader& reader, const DRTarReader::Entry& entry, DRPacketFolder& folder, DRDiskReserve& reserve)
{
    const auto path = safePathComponents(entry.path);
    if (!path || entry.kind == DRTarReader::Kind::Other || !isPathAllowed(entry.path, *path)) {
        return Outcome::LeftOut;
    }
    if (entry.kind == DRTarReader::Kind::File) {
        return extractFile(reader, entry, *path, folder, reserve);
    }
    return folder.makeFolder(*path) ? Outcome::Done : failedCall("making a folder");
}

} // namespace

DRExtraction extractArchive(DRTarReader& reader, DRPacketFolder& folder, DRDiskReserve& reserve)
{
    DRExtraction extraction;
    while (const auto entry = reader.nextEntry()) {
        const Outcome outcome = extractEntry(reader, *entry, folder, reserve);
        if (outcome == Outcome::Failed) {
            extraction.isWritten = false;
            return extraction;
        }
        extraction.leftOutCount += outcome == Outcome::LeftOut ? 1 : 0;
    }
    extraction.isDamaged = reader.isDamaged();
    return extraction;
}
