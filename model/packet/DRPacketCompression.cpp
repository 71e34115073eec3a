#include "model/packet/DRMigratePacketCodec.h"
#include "model/packet/DRPacketComparison.h"
#include "model/packet/DRPacketFolder.h"
#include "model/packet/DRPacketPaths.h"
#include "model/packet/DRPacketWriter.h"
#include "platform/core/DRFiles.h"
#include "platform/core/DRLog.h"
#include "platform/core/DRPendingFile.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

bool writePacket(DRPacketFolder& folder,
                 const std::vector<QByteArray>& paths,
                 const DRFileDescriptor& archive,
                 const DRFileDescriptor& packet)
{
    DRPacketWriter writer(archive, packet);
    const auto addFile = [&folder, &writer](const QByteArray& path) {
        const DRFileDescriptor file = folder.openFile(safePathComponents(path).value_or(std::vector<QByteArray>{}));
        if (!file.isOpen()) {
            qCWarning(lcMigrate, "A file cannot be packed: %s", std::strerror(errno));
            return false;
        }
        return writer.addFile(path, file);
    };
    return std::ranges::all_of(paths, addFile) && writer.finish();
}

/// Makes sure that the packet is on the disk and says what it should, before it takes the place of the one before it.
bool isSound(const DRPendingFile& packet, const DRPendingFile& archive)
{
    if (!packet.file().flush()) {
        qCWarning(lcMigrate, "A packet cannot be written: %s", std::strerror(errno));
        return false;
    }
    if (!packetHoldsArchive(packet.temporaryPath(), archive.file())) {
        qCWarning(lcMigrate, "A packet was written but does not read back as its archive");
        return false;
    }
    return true;
}

} // namespace

bool DRMigrateUtils::compressAndroidBackupPacket(const QString& directory,
                                                 const QStringList& filesToInclude,
                                                 const QString& targetFile)
{
    const auto paths = inPacketOrder(filesToInclude);
    if (!paths || filesToInclude.isEmpty()) {
        qCWarning(lcMigrate, "No packet is written: it has no files, or one with an unsafe path");
        return false;
    }
    DRPacketFolder folder(directory);
    DRPendingFile archive(directory + u"/compressBackup.tar"_s);
    DRPendingFile packet(targetFile);
    if (!folder.root().isOpen() || !archive.file().isOpen() || !packet.file().isOpen()) {
        qCWarning(lcMigrate, "A packet cannot be written: no file can be made in its folder");
        return false;
    }
    const bool isWritten = writePacket(folder, *paths, archive.file(), packet.file()) && isSound(packet, archive) &&
                           archive.publish() && packet.publish();
    if (isWritten) {
        // The packet is in place; that the renaming also survives a power cut is tried, but cannot be undone when it
        // fails.
        static_cast<void>(DRFiles::flushToDisk(QFileInfo(targetFile).absolutePath()));
    }
    return isWritten;
}
