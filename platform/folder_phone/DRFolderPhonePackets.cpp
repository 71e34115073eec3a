#include "platform/folder_phone/DRFolderPhonePackets.h"

#include "platform/core/DRPrivateFolder.h"
#include "platform/device/DRBRBackupRestoreController.h"
#include "platform/folder_phone/DRNoFollow.h"
#include "platform/folder_phone/DRPhoneProblems.h"
#include "platform/folder_phone/DRUsedSpace.h"
#include "platform/folder_phone/DRWholeFile.h"

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

DRFileDescriptor openPacket(const DRFolderPhoneRoot& root, const QString& packetID)
{
    const DRFileDescriptor folder = DRNoFollow::openFolders(root.open(), {DRFolderPhoneRoot::kPacketsFolder, packetID});
    return DRNoFollow::openFile(folder, DRFolderPhonePackets::kPacketFile);
}

/// Why not all of `source` arrived in `target` and on disk; nothing when it did.
std::optional<DRStepOutcome>
fill(const DRWholeFile& target, const DRFileDescriptor& source, const DRByteProgress& progress, const QString& place)
{
    const quint64 size = DRNoFollow::sizeOf(source);
    const auto copied = DRFileContent::copy(source, target.file(), progress);
    if (!copied || !target.flush()) {
        return DRPhoneProblems::cannotWrite(place, errno);
    }
    if (*copied != size) {
        return DRStepOutcome::failed(u"it changed while it was copied"_s);
    }
    return std::nullopt;
}

/// The folder of one packet on the phone. One that had to be made goes again unless something was put into it.
class PacketFolder {
public:
    PacketFolder(const DRFolderPhoneRoot& root, const QString& packetID)
        : m_packets(DRNoFollow::openOrMakeFolders(root.open(), {DRFolderPhoneRoot::kPacketsFolder})),
          m_name(nativePath(packetID)),
          m_wasMade(::faccessat(m_packets.number(), m_name.constData(), F_OK, AT_SYMLINK_NOFOLLOW) != 0),
          m_folder(DRNoFollow::openOrMakeFolder(m_packets, packetID)),
          m_errorNumber(m_folder.isOpen() ? 0 : errno)
    {
    }
    PacketFolder(const PacketFolder&) = delete;
    PacketFolder& operator=(const PacketFolder&) = delete;
    ~PacketFolder()
    {
        if (m_wasMade) {
            ::unlinkat(m_packets.number(), m_name.constData(), AT_REMOVEDIR); // refused unless it is empty
        }
    }

    [[nodiscard]] const DRFileDescriptor& folder() const { return m_folder; }
    [[nodiscard]] int errorNumber() const { return m_errorNumber; }

    /// The packet is in place; that it also survives a power cut is tried, but cannot be undone when it fails.
    void flush() const
    {
        static_cast<void>(m_folder.flush());
        static_cast<void>(m_packets.flush());
    }

private:
    DRFileDescriptor m_packets;
    QByteArray m_name;
    bool m_wasMade;
    DRFileDescriptor m_folder;
    int m_errorNumber;
};

/// The folder is made when it is missing.
DRStepOutcome copyToNewFile(const DRFileDescriptor& source, const QString& folderPath, const DRByteProgress& progress)
{
    const bool isMade = DRPrivateFolder::make(folderPath);
    const DRFileDescriptor folder = isMade ? DRNoFollow::openFolder(folderPath) : DRFileDescriptor();
    auto target = folder.isOpen() ? DRWholeFile::beginIn(folder) : std::nullopt;
    if (!target) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kComputer, errno);
    }
    if (const auto problem = fill(*target, source, progress, DRPhoneProblems::kComputer)) {
        return *problem;
    }
    // Never over an earlier backup: it may be the only way back.
    if (!target->placeAs(DRFolderPhonePackets::kPacketFile) || !folder.flush()) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kComputer, errno);
    }
    return {};
}

DRStepOutcome replaceOnPhone(const DRFolderPhoneRoot& root,
                             const QString& packetID,
                             const DRFileDescriptor& source,
                             const DRByteProgress& progress)
{
    const PacketFolder place(root, packetID);
    if (!place.folder().isOpen()) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, place.errorNumber());
    }
    DRWholeFile::removeLeftovers(place.folder());
    auto target = DRWholeFile::beginIn(place.folder());
    if (!target) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    if (const auto problem = fill(*target, source, progress, DRPhoneProblems::kPhone)) {
        return *problem;
    }
    if (!target->placeOver(DRFolderPhonePackets::kPacketFile)) {
        return DRPhoneProblems::cannotWrite(DRPhoneProblems::kPhone, errno);
    }
    place.flush();
    return root.isThere() ? DRStepOutcome{} : DRPhoneProblems::phoneGone();
}

} // namespace

DRFolderPhonePackets::DRFolderPhonePackets(DRFolderPhoneRoot root, quint64 capacityBytes)
    : m_root(std::move(root)), m_capacityBytes(capacityBytes)
{
}

QString DRFolderPhonePackets::pathBelow(const QString& folder, const QString& packetID)
{
    return folder + u'/' + packetID + u'/' + kPacketFile;
}

QStringList DRFolderPhonePackets::offered() const
{
    if (!m_root.isThere()) {
        return {};
    }
    const QDir packets(m_root.path() + u'/' + DRFolderPhoneRoot::kPacketsFolder);
    QStringList names = packets.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Unsorted);
    names.removeIf([](const QString& name) { return !DRBRBackupRestoreController::isPacketID(name); });
    names.sort();
    return names;
}

quint64 DRFolderPhonePackets::sizeOnPhone(const QString& packetID) const
{
    return DRBRBackupRestoreController::isPacketID(packetID) ? DRNoFollow::sizeOf(openPacket(m_root, packetID)) : 0;
}

DRStepOutcome
DRFolderPhonePackets::fetch(const QString& packetID, const QString& targetFolder, const DRByteProgress& progress) const
{
    if (!m_root.isThere()) {
        return DRPhoneProblems::phoneGone();
    }
    const DRFileDescriptor source =
        DRBRBackupRestoreController::isPacketID(packetID) ? openPacket(m_root, packetID) : DRFileDescriptor();
    if (!source.isOpen()) {
        return DRStepOutcome::failed(u"the phone cannot back it up"_s);
    }
    return copyToNewFile(source, targetFolder + u'/' + packetID, progress);
}

DRStepOutcome DRFolderPhonePackets::restore(const QString& packetID,
                                            const QString& sourceFolder,
                                            const DRByteProgress& progress) const
{
    if (!m_root.isThere()) {
        return DRPhoneProblems::phoneGone();
    }
    if (!DRBRBackupRestoreController::isPacketID(packetID)) {
        return DRStepOutcome::failed(u"it has no name of a packet"_s);
    }
    const QString sourcePath = pathBelow(sourceFolder, packetID);
    if (!statusWithoutFollowing(sourcePath)) {
        return DRStepOutcome::skipped(u"there is no rebuilt packet; the phone keeps its own"_s);
    }
    const DRFileDescriptor source = DRFileDescriptor::openRegularFile(sourcePath);
    if (!source.isOpen()) {
        return DRStepOutcome::failed(u"the rebuilt packet cannot be read"_s);
    }
    if (!hasRoomFor(packetID, DRNoFollow::sizeOf(source))) {
        return DRPhoneProblems::noSpace(DRPhoneProblems::kPhone);
    }
    return replaceOnPhone(m_root, packetID, source, progress);
}

bool DRFolderPhonePackets::hasRoomFor(const QString& packetID, quint64 bytes) const
{
    // The old packet gives its room to the new one.
    const quint64 used = DRUsedSpace::bytesNow(m_root);
    const quint64 usedByOthers = used - std::min(used, sizeOnPhone(packetID));
    return usedByOthers <= m_capacityBytes && bytes <= m_capacityBytes - usedByOthers;
}
