#include "platform/device/DRBRBackupRestoreController.h"

#include "platform/device/DRDCDevice.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct PacketOfDataType {
    QLatin1StringView dataType;
    QLatin1StringView packetID;
};

/// In the order in which packets are worked on: data types as listed, and the packets of one data type as listed.
constexpr std::array kPackets{
    PacketOfDataType{"contacts"_L1, "com.vornmobile.android.contactsimport"_L1},
    PacketOfDataType{"contacts"_L1, "com.vornmobile.android.socialphonebook"_L1},
    PacketOfDataType{"textMessages"_L1, "com.android.providers.telephony"_L1},
    PacketOfDataType{"calendar"_L1, "com.android.providers.calendar"_L1},
    PacketOfDataType{"bookmarks"_L1, "com.android.browser"_L1},
    PacketOfDataType{"bookmarks"_L1, "com.android.chrome"_L1},
    PacketOfDataType{"notes"_L1, "com.vornmobile.notes"_L1},
};

/// Also true for a link that leads nowhere: the name is taken all the same.
bool isTaken(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

DRBRBackupRestoreController::DRBRBackupRestoreController(QString phoneBackupsFolder)
    : m_phoneBackupsFolder(std::move(phoneBackupsFolder))
{
}

QStringList DRBRBackupRestoreController::packetIDsForDataType(const QString& key,
                                                              const QStringList& supported,
                                                              const QString& /*deviceVersion*/) const
{
    QStringList packetIDs;
    for (const PacketOfDataType& packet : kPackets) {
        if (packet.dataType == key && supported.contains(packet.packetID)) {
            packetIDs.append(packet.packetID);
        }
    }
    return packetIDs;
}

QString DRBRBackupRestoreController::pathToBackupFolderWithDevice(const DRDCDevice& device, const QDateTime& date) const
{
    // No colons: the folder may lie on a file system that knows none.
    const QString base = m_phoneBackupsFolder + u'/' + device.identifier() + u'/' +
                         date.toLocalTime().toString(u"yyyy-MM-dd HH-mm-ss"_s);
    QString folder = base;
    for (int number = 2; isTaken(folder); ++number) {
        folder = base + u" (%1)"_s.arg(number);
    }
    return folder;
}

QStringList DRBRBackupRestoreController::dataTypesDefaultSortOrder() const
{
    QStringList keys;
    for (const PacketOfDataType& packet : kPackets) {
        if (!keys.contains(packet.dataType)) {
            keys.append(packet.dataType);
        }
    }
    return keys;
}

QString DRBRBackupRestoreController::dataTypeOfPacket(const QString& packetID)
{
    for (const PacketOfDataType& packet : kPackets) {
        if (packet.packetID == packetID) {
            return packet.dataType;
        }
    }
    return {};
}

bool DRBRBackupRestoreController::isPacketID(const QString& name)
{
    static const QRegularExpression pattern(u"\\A[A-Za-z0-9_]+(\\.[A-Za-z0-9_]+)*\\z"_s);
    return pattern.match(name).hasMatch();
}
