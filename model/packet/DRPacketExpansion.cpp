#include "model/packet/DRBufferPipe.h"
#include "model/packet/DRDiskReserve.h"
#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketExtraction.h"
#include "model/packet/DRPacketFolder.h"
#include "model/packet/DRPacketPayload.h"
#include "model/packet/DRTarReader.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPendingFile.h"
#include "platform/core/DRPrivateFolder.h"

#include <cerrno>
#include <cstring>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kBufferCount = 8;
constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

bool makeEmpty(const QString& folder)
{
    DRFiles::removeTree(folder); // what cannot be removed shows when files are put there
    return DRPrivateFolder::make(folder);
}

/// Copies the packet's archive to the file and into the pipe. False when it is damaged or cannot be written.
bool inflateArchive(DRPacketPayload& payload,
                    const DRFileDescriptor& archive,
                    DRBufferPipe& pipe,
                    DRDiskReserve& reserve)
{
    for (;;) {
        const std::span<char> room = pipe.room();
        if (room.empty()) {
            return false; // the extraction has failed and said why
        }
        const std::optional<std::size_t> size = payload.read(room);
        if (!size) {
            qCWarning(lcMigrate, "A packet cannot be expanded: its compression is damaged or it cannot be read");
            return false;
        }
        if (*size == 0) {
            return true;
        }
        if (!reserve.allows(*size)) {
            qCWarning(lcMigrate, "A packet cannot be expanded: its archive does not fit on the disk");
            return false;
        }
        if (!archive.writeAll(room.data(), static_cast<qint64>(*size))) {
            qCWarning(lcMigrate, "A packet cannot be expanded: writing its archive: %s", std::strerror(errno));
            return false;
        }
        pipe.commit(*size);
    }
}

DRExtraction extractFromPipe(DRBufferPipe& pipe, DRPacketFolder& folder)
{
    DRDiskReserve reserve(folder.root().number());
    DRTarReader reader([&pipe] { return pipe.next(); });
    const DRExtraction extraction = extractArchive(reader, folder, reserve);
    if (!extraction.isWritten) {
        pipe.abandon();
        return extraction;
    }
    while (!pipe.next().empty()) {
        // What follows the archive's end goes into "expandBackup.tar" alone.
    }
    return extraction;
}

/// Oddities of a packet that was expanded all the same.
void logOddities(const DRExtraction& extraction)
{
    if (extraction.leftOutCount > 0) {
        qCWarning(lcMigrate, "Left out of a packet: %d links, devices or entries with unsafe paths",
                  extraction.leftOutCount);
    }
    if (extraction.isDamaged) {
        qCWarning(lcMigrate, "A packet's archive cannot be read to its end; what came before is kept");
    }
}

/// Two threads: one inflates and keeps the archive, the other extracts it.
DRMigrateUtils::PacketExpansion expandInto(const QString& directory, DRPacketPayload& payload)
{
    DRPacketFolder folder(directory);
    DRPendingFile archive(directory + u"/expandBackup.tar"_s);
    if (!folder.root().isOpen() || !archive.file().isOpen()) {
        qCWarning(lcMigrate, "A packet cannot be expanded: no file can be made in %s", qUtf8Printable(directory));
        return {};
    }
    DRDiskReserve reserve(folder.root().number());
    DRBufferPipe pipe(kBufferCount, kBufferBytes);
    DRExtraction extraction;
    std::thread extracting([&] { extraction = extractFromPipe(pipe, folder); });
    const bool isInflated = inflateArchive(payload, archive.file(), pipe, reserve);
    pipe.close();
    extracting.join();
    if (!isInflated || !extraction.isWritten || !archive.publish()) {
        return {};
    }
    logOddities(extraction);
    return {.isExpanded = true, .isDamaged = extraction.isDamaged, .leftOutCount = extraction.leftOutCount};
}

} // namespace

bool DRMigrateUtils::expandAndroidBackupPacket(const QString& packet, const QString& targetDirectory)
{
    return expandPacket(packet, targetDirectory).isExpanded;
}

DRMigrateUtils::PacketExpansion DRMigrateUtils::expandPacket(const QString& packet, const QString& targetDirectory)
{
    std::optional<DRPacketPayload> payload = DRPacketPayload::open(packet);
    if (!payload) {
        return {};
    }
    const PacketExpansion expansion =
        makeEmpty(targetDirectory) ? expandInto(targetDirectory, *payload) : PacketExpansion();
    if (!expansion.isExpanded) {
        makeEmpty(targetDirectory);
    }
    return expansion;
}
